#include "ui/kit/AddressLabel.h"

#include <QApplication>
#include <QFocusEvent>
#include <QFontMetrics>
#include <QPainter>
#include <QStyle>

namespace orvalen::kit {

namespace {

constexpr int toolkitsMargin = 2; // left and right of a line edit's text
constexpr int smallestWidth = 48; // something like "htt…999"

} // namespace

AddressLabel::AddressLabel(QWidget *parent) : QLineEdit(parent)
{
    setReadOnly(true);
    setFrame(false);
    setTextMargins(-toolkitsMargin, 0, -toolkitsMargin, 0);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    setFocusPolicy(Qt::ClickFocus); // on the way from control to control there is the button that copies
    if (parentWidget())
        parentWidget()->installEventFilter(this);
    alignToReading();
    applyFont();
    applyShade();
}

void AddressLabel::setAddress(const QString &address)
{
    if (text() == address)
        return;
    setText(address);
    setToolTip(address); // there may be no room for all of it
    setCursorPosition(0);
    updateGeometry();
}

void AddressLabel::setType(const Type &type)
{
    if (textType == type)
        return;
    textType = type;
    applyFont();
}

void AddressLabel::setShade(const Shade &shade)
{
    if (textShade == shade)
        return;
    textShade = shade;
    applyShade();
}

// Our own font is the scaled one already: what it is scaled from is the surroundings' font.
void AddressLabel::applyFont()
{
    setFont(textType.font(parentWidget() ? parentWidget()->font() : QApplication::font()));
    updateGeometry();
}

void AddressLabel::applyShade()
{
    auto colors = palette();
    colors.setColor(QPalette::Text, textShade.in(*this));
    colors.setColor(QPalette::Base, Qt::transparent);
    setPalette(colors);
}

// A line edit would ask its text, and an address always runs from left to right.
void AddressLabel::alignToReading()
{
    setAlignment((isRightToLeft() ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignAbsolute | Qt::AlignVCenter);
}

QSize AddressLabel::sizeHint() const
{
    return {textWidth(font(), text()) + 1, lineHeight(font())};
}

QSize AddressLabel::minimumSizeHint() const
{
    const auto natural = sizeHint();
    return {std::min(natural.width(), smallestWidth), natural.height()};
}

bool AddressLabel::isShortened() const
{
    return !hasFocus() && textWidth(font(), text()) > width();
}

QString AddressLabel::shown() const
{
    return isShortened() ? QFontMetrics(font()).elidedText(text(), Qt::ElideMiddle, width()) : text();
}

bool AddressLabel::event(QEvent *event)
{
    const bool result = QLineEdit::event(event);
    switch (event->type()) {
    case QEvent::ParentAboutToChange:
        if (parentWidget())
            parentWidget()->removeEventFilter(this);
        break;
    case QEvent::ParentChange:
        applyFont();
        if (parentWidget())
            parentWidget()->installEventFilter(this);
        break;
    case QEvent::PaletteChange:
        applyShade();
        break;
    case QEvent::LayoutDirectionChange:
        alignToReading();
        break;
    default:
        break;
    }
    return result;
}

// Who has a font of his own is not told when the surroundings' font changes.
bool AddressLabel::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == parentWidget() && event->type() == QEvent::FontChange)
        applyFont();
    return QLineEdit::eventFilter(watched, event);
}

void AddressLabel::paintEvent(QPaintEvent *event)
{
    if (!isShortened()) {
        QLineEdit::paintEvent(event);
        return;
    }
    QPainter painter(this);
    painter.setPen(textShade.in(*this));
    painter.setLayoutDirection(Qt::LeftToRight);
    painter.drawText(rect(), alignment() | Qt::TextSingleLine, shown());
}

void AddressLabel::focusInEvent(QFocusEvent *event)
{
    QLineEdit::focusInEvent(event);
    update();
}

void AddressLabel::focusOutEvent(QFocusEvent *event)
{
    QLineEdit::focusOutEvent(event);
    if (event->reason() == Qt::PopupFocusReason || event->reason() == Qt::ActiveWindowFocusReason)
        return; // its own menu, or a look at another window: the selection is still wanted
    deselect();
    setCursorPosition(0);
    update();
}

// The parts of an address are nobody's words.
void AddressLabel::mouseDoubleClickEvent(QMouseEvent *)
{
    selectAll();
}

} // namespace orvalen::kit
