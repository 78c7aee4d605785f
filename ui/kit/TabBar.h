#pragma once

#include <QWidget>

#include <vector>

#include "ui/kit/TabButton.h"

namespace orvalen::kit {

/// A row of tabs. Each has its symbol beside its title where the row is at least `wideFrom` px wide and they all fit,
/// else above it; titles of several words take two lines where they would not fit on one. Left and Right go from tab to
/// tab and choose it.
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
    [[nodiscard]] TabButton::Form formAt(int width) const;
    [[nodiscard]] int naturalWidth(TabButton::Form form) const;
    [[nodiscard]] int minimumWidth(TabButton::Form form) const;
    void place();

    std::vector<TabButton *> tabs;
    int wideFrom;
};

} // namespace orvalen::kit
