#include "ui/kit/AddressRow.h"

#include <QEvent>
#include <QStyle>

#include <algorithm>

namespace orvalen::kit {

namespace {

constexpr int gap = 6;

} // namespace

AddressRow::AddressRow(QWidget *address, std::vector<QWidget *> given, QWidget *parent)
    : QWidget(parent), address(address), buttons(std::move(given))
{
    auto policy = QSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    address->setParent(this);
    for (auto *button : buttons)
        button->setParent(this);
}

QSize AddressRow::buttonsSize() const
{
    QSize size(-gap, 0);
    for (const auto *button : buttons) {
        const auto hint = button->sizeHint();
        size = {size.width() + gap + hint.width(), std::max(size.height(), hint.height())};
    }
    return size;
}

bool AddressRow::stacksAt(int width) const
{
    return width < address->sizeHint().width() + gap + buttonsSize().width();
}

QSize AddressRow::sizeHint() const
{
    const auto size = buttonsSize();
    return {address->sizeHint().width() + gap + size.width(), std::max(address->sizeHint().height(), size.height())};
}

QSize AddressRow::minimumSizeHint() const
{
    const auto size = buttonsSize();
    return {std::max(address->minimumSizeHint().width(), size.width()),
            std::max(address->sizeHint().height(), size.height())};
}

int AddressRow::heightForWidth(int width) const
{
    const int text = address->sizeHint().height();
    const int row = buttonsSize().height();
    return stacksAt(width) ? text + gap + row : std::max(text, row);
}

bool AddressRow::event(QEvent *event)
{
    const bool result = QWidget::event(event);
    switch (event->type()) {
    case QEvent::LayoutRequest: // an address of another length, or a larger font
        updateGeometry();
        place();
        break;
    case QEvent::LayoutDirectionChange:
        place();
        break;
    default:
        break;
    }
    return result;
}

void AddressRow::resizeEvent(QResizeEvent *)
{
    place();
}

void AddressRow::place()
{
    const auto put = [this](QWidget *widget, const QRect &place) {
        widget->setGeometry(QStyle::visualRect(layoutDirection(), rect(), place));
    };
    const auto row = buttonsSize();
    const int text = address->sizeHint().height();
    const bool stacked = stacksAt(width());
    const int lineHeight = std::max(text, row.height());
    int x = stacked ? 0 : width() - row.width();
    int y = (lineHeight - row.height()) / 2;
    if (stacked) {
        put(address, {0, 0, width(), text});
        y = text + gap;
    } else {
        put(address, {0, (lineHeight - text) / 2, width() - gap - row.width(), text});
    }
    for (auto *button : buttons) {
        const auto size = button->sizeHint();
        put(button, {QPoint(x, y), size});
        x += size.width() + gap;
    }
}

} // namespace orvalen::kit
