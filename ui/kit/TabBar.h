#pragma once

#include <QWidget>

#include <vector>

namespace orvalen::kit {

class TabButton;

/// A row of tabs. Each has its symbol beside its title where the row is at least `wideFrom` px wide and they all fit,
/// else above it. Left and Right go from tab to tab and choose it.
class TabBar : public QWidget
{
    Q_OBJECT

public:
    TabBar(std::vector<TabButton *> tabs, int wideFrom, QWidget *parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;

protected:
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    [[nodiscard]] bool stacksAt(int width) const;
    [[nodiscard]] int naturalWidth(bool stacked) const;
    void place();

    std::vector<TabButton *> tabs;
    int wideFrom;
};

} // namespace orvalen::kit
