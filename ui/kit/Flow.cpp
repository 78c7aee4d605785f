#include "ui/kit/Flow.h"

#include <QEvent>
#include <QStyle>

#include <algorithm>

namespace orvalen::kit {

Flow::Flow(std::vector<QWidget *> given, int spacing, QWidget *parent)
    : QWidget(parent), elements(std::move(given)), spacing(spacing)
{
    auto policy = QSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    for (auto *element : elements)
        element->setParent(this);
}

std::vector<QRect> Flow::placesAt(int width) const
{
    std::vector<QRect> places;
    QPoint next(0, 0);
    int lineHeight = 0;
    for (const auto *element : elements) {
        const auto size = element->sizeHint();
        if (next.x() > 0 && next.x() + size.width() > width) {
            next = {0, next.y() + lineHeight};
            lineHeight = 0;
        }
        places.emplace_back(next, size);
        next.rx() += size.width() + spacing;
        lineHeight = std::max(lineHeight, size.height());
    }
    return places;
}

QSize Flow::sizeHint() const
{
    constexpr int unlimited = 1 << 20;
    QRect all;
    for (const auto &place : placesAt(unlimited))
        all |= place;
    return all.size();
}

QSize Flow::minimumSizeHint() const
{
    QSize largest(0, 0);
    for (const auto *element : elements)
        largest = largest.expandedTo(element->sizeHint());
    return largest;
}

int Flow::heightForWidth(int width) const
{
    QRect all;
    for (const auto &place : placesAt(width))
        all |= place;
    return all.height();
}

bool Flow::event(QEvent *event)
{
    const bool result = QWidget::event(event);
    if (event->type() == QEvent::LayoutRequest) {
        updateGeometry();
        place();
    } else if (event->type() == QEvent::LayoutDirectionChange) {
        place();
    }
    return result;
}

void Flow::resizeEvent(QResizeEvent *)
{
    place();
}

void Flow::place()
{
    const auto places = placesAt(width());
    for (std::size_t i = 0; i < elements.size(); ++i)
        elements[i]->setGeometry(QStyle::visualRect(layoutDirection(), rect(), places[i]));
}

} // namespace orvalen::kit
