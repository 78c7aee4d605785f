#include "ui/kit/Badge.h"

#include <QEvent>
#include <QFontMetrics>
#include <QPainter>
#include <QStyle>

#include <cmath>

#include "ui/kit/Accessibility.h"

namespace orvalen::kit {

namespace {

constexpr int dot = 8;
constexpr int gap = 6;

} // namespace

Badge::Badge(const Style &style, QWidget *parent) : QLabel(parent), style(style), vivid(*this), ink(*this)
{
    setTextFormat(Qt::PlainText);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    vivid.set(color.vivid);
    ink.set(color.ink);
}

void Badge::setWord(const QString &word)
{
    if (text() == word)
        return;
    setText(word);
    updateGeometry();
    if (style.isAnnounced)
        announceLater();
}

void Badge::setAccent(const Accent &accent)
{
    if (color == accent)
        return;
    color = accent;
    if (style.isStatus) {
        vivid.set(color.vivid);
        ink.set(color.ink);
    } else {
        vivid.jumpTo(color.vivid);
        ink.jumpTo(color.ink);
    }
}

// Several values change one after another when a warm-up ends; only where they arrive is worth a word.
void Badge::announceLater()
{
    if (std::exchange(announcing, true))
        return;
    QMetaObject::invokeMethod(
        this,
        [this] {
            announcing = false;
            const auto before = std::exchange(lastAnnounced, text());
            if (before.isEmpty() || before == text() || !isVisible())
                return;
            announceAlert(*this);
            Q_EMIT announced(text());
        },
        Qt::QueuedConnection);
}

QSize Badge::sizeHint() const
{
    const auto font = style.type.font(*this);
    const int dotRoom = style.isStatus ? dot + gap : 0;
    return {textWidth(font, text()) + dotRoom + 2 * style.padding.width(),
            static_cast<int>(std::lround(1.2 * font.pixelSize())) + 2 * style.padding.height()};
}

void Badge::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    const double radius = style.radius < 0 ? height() / 2.0 : style.radius;
    painter.setBrush(vivid.shown().at(style.tint).in(*this));
    painter.drawRoundedRect(rect(), radius, radius);

    QRect content = rect().adjusted(style.padding.width(), 0, -style.padding.width(), 0);
    if (style.isStatus) {
        const QRect place(content.left(), (height() - dot) / 2, dot, dot);
        painter.setBrush(vivid.shown().in(*this));
        painter.drawEllipse(QStyle::visualRect(layoutDirection(), rect(), place));
        content.setLeft(content.left() + dot + gap);
    }
    painter.setPen(ink.shown().in(*this));
    painter.setFont(style.type.font(*this));
    painter.setLayoutDirection(Qt::LayoutDirectionAuto);
    painter.drawText(QStyle::visualRect(layoutDirection(), rect(), content), Qt::AlignCenter | Qt::TextSingleLine,
                     text());
}

void Badge::changeEvent(QEvent *event)
{
    QLabel::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        update();
}

} // namespace orvalen::kit
