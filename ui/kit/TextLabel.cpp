#include "ui/kit/TextLabel.h"

#include <QEvent>
#include <QFontMetricsF>
#include <QPainter>
#include <QStyle>
#include <QTextLayout>
#include <QTextOption>

#include <cmath>

#include "ui/kit/Accessibility.h"
#include "ui/kit/TextLine.h"

namespace orvalen::kit {

namespace {

constexpr int comfortableWidth = 320;  // of a paragraph that nobody has given a width
constexpr std::size_t mostWidths = 16; // remembered of one text

} // namespace

TextLabel::TextLabel(QWidget *parent) : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);
}

void TextLabel::setText(const QString &newText)
{
    if (text() != newText)
        QLabel::setText(newText);
    if (isAnnounced) // once it is there to be read
        QMetaObject::invokeMethod(
            this,
            [this] {
                announceAlert(*this);
                Q_EMIT announced(text());
            },
            Qt::QueuedConnection);
}

void TextLabel::setType(const Type &newType)
{
    if (textType == newType)
        return;
    textType = newType;
    updateGeometry();
    update();
}

void TextLabel::setShade(const Shade &newShade)
{
    if (textShade == newShade)
        return;
    textShade = newShade;
    update();
}

void TextLabel::setWraps(bool wraps)
{
    if (wordWrap() == wraps)
        return;
    setWordWrap(wraps);
    updateGeometry();
    update();
}

TextLabel::Measured &TextLabel::measured() const
{
    auto &now = remembered;
    const auto font = textType.font(*this);
    if (now.text != text() || now.font != font || now.wraps != wordWrap() || now.direction != layoutDirection())
        now = {text(), font, wordWrap(), layoutDirection(), {}, {}};
    return now;
}

QTextOption TextLabel::option() const
{
    QTextOption option(QStyle::visualAlignment(layoutDirection(), alignment()) & Qt::AlignHorizontal_Mask);
    option.setTextDirection(Qt::LayoutDirectionAuto); // a sentence reads in its own direction wherever it stands
    option.setWrapMode(wordWrap() ? QTextOption::WrapAtWordBoundaryOrAnywhere : QTextOption::NoWrap);
    return option;
}

QSize TextLabel::laidOut(int width) const
{
    auto &now = measured();
    if (now.sizes.size() > mostWidths)
        now.sizes.clear();
    const auto [known, isNew] = now.sizes.try_emplace(width);
    if (isNew) {
        QTextLayout layout(now.text, now.font);
        layout.setFormats(pictureFormats(now.text, now.font));
        layout.setTextOption(option());
        const auto size = layOut(layout, width);
        known->second = {static_cast<int>(std::ceil(size.width())), static_cast<int>(size.height())};
    }
    return known->second;
}

QSize TextLabel::sizeHint() const
{
    constexpr int unlimited = 1 << 20;
    const auto natural = laidOut(unlimited);
    return wordWrap() && natural.width() > comfortableWidth ? laidOut(comfortableWidth) : natural;
}

QSize TextLabel::minimumSizeHint() const
{
    const auto natural = sizeHint();
    if (!wordWrap())
        return natural;
    auto &now = measured();
    if (!now.smallest) {
        const QFontMetricsF metrics(now.font);
        double longestWord = 0.0;
        for (const auto &word : QStringView(text()).split(u' '))
            longestWord = std::max(longestWord, metrics.horizontalAdvance(word.toString()));
        now.smallest = {static_cast<int>(std::ceil(longestWord)), lineHeight(now.font)};
    }
    return *now.smallest;
}

int TextLabel::heightForWidth(int width) const
{
    return wordWrap() ? laidOut(width).height() : -1;
}

void TextLabel::paintEvent(QPaintEvent *)
{
    const auto font = textType.font(*this);
    QTextLayout layout(text(), font);
    layout.setFormats(pictureFormats(text(), font));
    layout.setTextOption(option());
    const auto size = layOut(layout, width());

    double y = 0.0;
    if (alignment() & Qt::AlignVCenter)
        y = std::floor((height() - size.height()) / 2);
    else if (alignment() & Qt::AlignBottom)
        y = height() - size.height();

    QPainter painter(this);
    painter.setPen(textShade.in(*this));
    fadeWhereDisabled(painter, *this);
    layout.draw(&painter, {0.0, y});
}

void TextLabel::changeEvent(QEvent *event)
{
    QLabel::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        updateGeometry();
    if (event->type() == QEvent::PaletteChange)
        update();
}

} // namespace orvalen::kit
