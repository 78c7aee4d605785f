#pragma once

#include <QWidget>

#include <vector>

namespace orvalen::kit {

/// Widgets one after another, each as large as it likes, on further lines where they do not fit on one.
class Flow : public QWidget
{
    Q_OBJECT

public:
    /// `spacing` between neighbours; lines lie one upon the other.
    Flow(std::vector<QWidget *> elements, int spacing, QWidget *parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    int heightForWidth(int width) const override;

protected:
    bool event(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    /// Where each element lies, from the left.
    [[nodiscard]] std::vector<QRect> placesAt(int width) const;
    void place();

    std::vector<QWidget *> elements;
    int spacing;
};

} // namespace orvalen::kit
