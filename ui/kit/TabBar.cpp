#include "ui/kit/TabBar.h"

#include <QEvent>
#include <QKeyEvent>
#include <QStyle>

#include <algorithm>

#include "ui/kit/Keys.h"

namespace orvalen::kit {

namespace {

constexpr int gap = 4;

using Form = TabButton::Form;

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

int TabBar::naturalWidth(Form form) const
{
    int width = gap * (static_cast<int>(tabs.size()) - 1);
    for (const auto *tab : tabs)
        width += tab->sizeHintIn(form).width();
    return width;
}

int TabBar::minimumWidth(Form form) const
{
    int width = gap * (static_cast<int>(tabs.size()) - 1);
    for (const auto *tab : tabs)
        width += tab->minimumSizeIn(form).width();
    return width;
}

Form TabBar::formAt(int width) const
{
    if (width >= wideFrom && width >= minimumWidth(Form::beside))
        return Form::beside;
    return width >= minimumWidth(Form::above) ? Form::above : Form::aboveTwoLines;
}

QSize TabBar::sizeHint() const
{
    const int width = naturalWidth(Form::beside);
    return {width, heightForWidth(width)};
}

QSize TabBar::minimumSizeHint() const
{
    return {minimumWidth(Form::aboveTwoLines), tabs.front()->sizeHintIn(Form::beside).height()};
}

int TabBar::heightForWidth(int width) const
{
    return tabs.front()->sizeHintIn(formAt(width)).height();
}

void TabBar::resizeEvent(QResizeEvent *)
{
    place();
}

void TabBar::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        updateGeometry();
    if (event->type() == QEvent::FontChange || event->type() == QEvent::LayoutDirectionChange)
        place();
}

// Tabs with symbols above share the whole row, each according to its title; with symbols beside they keep to the
// leading edge. Where room is short all give way by the same, but for their titles.
void TabBar::place()
{
    const auto form = formAt(width());
    const int count = static_cast<int>(tabs.size());
    const int left = width() - naturalWidth(form);
    const int spare = form == Form::beside ? std::min(0, left) : left;
    int x = 0;
    for (int i = 0; i < count; ++i) {
        auto *tab = tabs[static_cast<std::size_t>(i)];
        tab->setForm(form);
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
    const auto &press = *static_cast<QKeyEvent *>(event);
    const int key = press.key();
    if ((key != Qt::Key_Left && key != Qt::Key_Right) || !isAlone(press))
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
