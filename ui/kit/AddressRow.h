#pragma once

#include <QWidget>

#include <vector>

namespace orvalen::kit {

/// Something to read, and buttons for it: after it, at the far end of the line, or beneath it where the line is too
/// short for all.
class AddressRow : public QWidget
{
    Q_OBJECT

public:
    AddressRow(QWidget *address, std::vector<QWidget *> buttons, QWidget *parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;

protected:
    bool event(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    [[nodiscard]] bool stacksAt(int width) const;
    [[nodiscard]] QSize buttonsSize() const;
    void place();

    QWidget *address;
    std::vector<QWidget *> buttons;
};

} // namespace orvalen::kit
