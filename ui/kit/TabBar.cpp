#include "ui/kit/TabBar.h"

#include <QEvent>
#include <QKeyEvent>
#include <QStyle>

#include <algorithm>

#include "ui/kit/TabButton.h"

namespace orvalen::kit {

namespace {

constexpr int gap = 4;

} // namespace

TabBar::TabBar(std::vector<TabButton *> given, int wideFrom, QWidget *parent)
    : QWidget(parent), tabs(std::move(given)), wideFrom(wideFrom)
{
    auto policy = QSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    for (auto *tab : tabs) {
        tab->setParent(this);
        tab->installEventFilter(this);
    }
}

int TabBar::naturalWidth(bool stacked) const
{
    int width = gap * (static_cast<int>(tabs.size()) - 1);
    for (const auto *tab : tabs)
        width += tab->sizeHintWhen(stacked).width();
    return width;
}

bool TabBar::stacksAt(int width) const
{
    return width < wideFrom || width < naturalWidth(false);
}

QSize TabBar::sizeHint() const
{
    const int width = naturalWidth(false);
    return {width, heightForWidth(width)};
}

QSize TabBar::minimumSizeHint() const
{
    int width = gap * (static_cast<int>(tabs.size()) - 1);
    for (const auto *tab : tabs)
        width += tab->minimumSizeHint().width();
    return {width, tabs.front()->sizeHintWhen(false).height()};
}

int TabBar::heightForWidth(int width) const
{
    return tabs.front()->sizeHintWhen(stacksAt(width)).height();
}

void TabBar::resizeEvent(QResizeEvent *)
{
    place();
}

void TabBar::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::LayoutDirectionChange)
        place();
}

// Stacked tabs share the whole row, each according to its title; side by side they keep to the leading edge.
void TabBar::place()
{
    const bool stacked = stacksAt(width());
    const int count = static_cast<int>(tabs.size());
    const int spare = stacked ? width() - naturalWidth(true) : 0;
    int x = 0;
    for (int i = 0; i < count; ++i) {
        auto *tab = tabs[static_cast<std::size_t>(i)];
        tab->setStacked(stacked);
        const auto natural = tab->sizeHint();
        const int share = spare * (i + 1) / count - spare * i / count;
        const QRect place(x, 0, std::max(tab->minimumSizeHint().width(), natural.width() + share), natural.height());
        tab->setGeometry(QStyle::visualRect(layoutDirection(), rect(), place));
        x += place.width() + gap;
    }
}

bool TabBar::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::KeyPress)
        return false;
    const int key = static_cast<QKeyEvent *>(event)->key();
    if (key != Qt::Key_Left && key != Qt::Key_Right)
        return false;
    const auto at = std::find(tabs.begin(), tabs.end(), watched) - tabs.begin();
    const auto next = at + ((key == Qt::Key_Right) != isRightToLeft() ? 1 : -1);
    if (next >= 0 && next < static_cast<std::ptrdiff_t>(tabs.size())) {
        auto *tab = tabs[static_cast<std::size_t>(next)];
        tab->setFocus(Qt::TabFocusReason);
        tab->click();
    }
    return true;
}

} // namespace orvalen::kit
