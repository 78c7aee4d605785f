#include "tests/ui/Fit.h"

#include <QLayout>
#include <QScrollBar>
#include <QTextBoundaryFinder>
#include <QTextLayout>
#include <QTextOption>

#include <optional>

#include "tests/ui/Reading.h"
#include "ui/kit/FocusRing.h"
#include "ui/kit/ScrollArea.h"
#include "ui/kit/TabButton.h"

namespace orvalen::test {

namespace {

using namespace kit;

constexpr int smallestTarget = 24;

// What lies above everything else and moves nothing.
bool isOverlay(const QWidget &widget)
{
    return qobject_cast<const FocusRing *>(&widget) || qobject_cast<const QScrollBar *>(&widget);
}

bool isScrolled(const QWidget &widget)
{
    const auto *viewport = widget.parentWidget();
    const auto *area = viewport ? qobject_cast<const QScrollArea *>(viewport->parentWidget()) : nullptr;
    return area && area->widget() == &widget;
}

std::string rectText(const QRect &rect)
{
    return QStringLiteral("%1,%2 %3x%4").arg(rect.x()).arg(rect.y()).arg(rect.width()).arg(rect.height()).toStdString();
}

std::string described(const QWidget &widget)
{
    return widget.metaObject()->className() + (" \"" + nameOf(&widget) + "\" at ") + rectText(widget.geometry());
}

/// The first line of the text that ends in the middle of a word, or is too long.
std::optional<QString> brokenLine(const QString &text, const QFont &font, int width)
{
    QTextBoundaryFinder breaks(QTextBoundaryFinder::Line, text);
    QTextLayout layout(text, font);
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    std::optional<QString> found;
    layout.beginLayout();
    for (auto line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        const int end = line.textStart() + line.textLength();
        breaks.setPosition(end);
        const bool isBetweenWords = breaks.isAtBoundary() || text[end - 1].isSpace();
        if (!found && (!isBetweenWords || line.naturalTextWidth() > width + 0.5))
            found = text.mid(line.textStart(), line.textLength());
    }
    layout.endLayout();
    return found;
}

class Inspection
{
public:
    explicit Inspection(const QWidget &window) : window(window)
    {
        for (const auto *widget : window.findChildren<QWidget *>()) {
            if (widget->isVisibleTo(&window) && !isOverlay(*widget))
                inspect(*widget);
        }
    }

    std::vector<std::string> found;

private:
    void complain(const QWidget &widget, const std::string &what)
    {
        found.push_back(described(widget) + ": " + what + ", in a window of " + rectText(window.rect()));
    }

    void inspect(const QWidget &widget)
    {
        if (isScrolled(widget))
            inspectScrolled(widget);
        else if (!widget.parentWidget()->rect().contains(widget.geometry()))
            complain(widget, "beyond its parent of " + rectText(widget.parentWidget()->rect()));
        inspectNeighbours(widget);
        inspectRoom(widget);
    }

    void inspectScrolled(const QWidget &content)
    {
        const auto &viewport = *content.parentWidget();
        const auto &area = *qobject_cast<const QScrollArea *>(viewport.parentWidget());
        if (content.width() != viewport.width())
            complain(content, "another width than what it scrolls in");
        if (area.verticalScrollBar()->maximum() != std::max(0, content.height() - viewport.height()))
            complain(content, "not all of it can be scrolled to");
    }

    void inspectNeighbours(const QWidget &widget)
    {
        for (const auto *child : widget.parentWidget()->children()) {
            const auto *other = qobject_cast<const QWidget *>(child);
            if (other == &widget)
                break; // those after it find it themselves
            if (other && other->isVisibleTo(&window) && !isOverlay(*other) &&
                other->geometry().intersects(widget.geometry()))
                complain(widget, "upon " + described(*other));
        }
    }

    void inspectRoom(const QWidget &widget)
    {
        const auto wanted = wantedSize(widget);
        if (widget.width() < wanted.width() || widget.height() < wanted.height())
            complain(widget, "wants " + rectText({{}, wanted}));
        if (const auto *label = qobject_cast<const TextLabel *>(&widget); label && label->wordWrap()) {
            const auto broken = brokenLine(label->text(), label->type().font(*label), label->width());
            if (broken)
                complain(widget, "breaks a word after \"" + broken->toStdString() + '"');
        }
        if (qobject_cast<const Control *>(&widget) && std::min(widget.width(), widget.height()) < smallestTarget)
            complain(widget, "too small to be hit");
        if (const auto *address = qobject_cast<const AddressLabel *>(&widget))
            inspectAddress(*address);
    }

    static QSize wantedSize(const QWidget &widget)
    {
        if (widget.layout() && widget.layout()->hasHeightForWidth())
            return {widget.minimumSizeHint().width(), widget.layout()->totalMinimumHeightForWidth(widget.width())};
        if (widget.hasHeightForWidth())
            return {widget.minimumSizeHint().width(), widget.heightForWidth(widget.width())};
        // These show the whole of their text in less than they would like to have.
        if (qobject_cast<const AddressLabel *>(&widget) || qobject_cast<const TabButton *>(&widget) ||
            qobject_cast<const CallToAction *>(&widget) || qobject_cast<const Slider *>(&widget) || widget.layout())
            return widget.minimumSizeHint();
        if (qobject_cast<const QAbstractScrollArea *>(&widget))
            return {widget.minimumSizeHint().width(), 1};
        return widget.sizeHint();
    }

    void inspectAddress(const AddressLabel &address)
    {
        const auto shown = address.shown();
        if (shown == address.text())
            return;
        const auto middle = shown.indexOf(QChar(0x2026));
        if (middle < 3 || middle > shown.size() - 4 || !address.text().startsWith(shown.left(middle)) ||
            !address.text().endsWith(shown.mid(middle + 1)))
            complain(address, "shortened to " + shown.toStdString());
    }

    const QWidget &window;
};

} // namespace

std::vector<std::string> misfits(const QWidget &window)
{
    return Inspection(window).found;
}

} // namespace orvalen::test
