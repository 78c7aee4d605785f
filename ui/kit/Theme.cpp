#include "ui/kit/Theme.h"

#include <QApplication>
#include <QEvent>
#include <QPointer>
#include <QWidget>

#include "platform/ColorScheme.h"
#include "ui/kit/Shade.h"

namespace orvalen::kit {

bool isDark(const QPalette &palette)
{
    return palette.color(QPalette::Window).lightnessF() < palette.color(QPalette::WindowText).lightnessF();
}

QPalette themePalette(bool dark)
{
    const auto color = [dark](const Shade &shade) { return QColor::fromRgba(dark ? shade.dark : shade.light); };
    const auto text = color(neutral::text);
    const auto window = color(neutral::window);
    const auto card = color(neutral::card);

    QPalette palette(card, window);
    palette.setColor(QPalette::Window, window);
    palette.setColor(QPalette::Base, card);
    palette.setColor(QPalette::AlternateBase, color(neutral::panel));
    palette.setColor(QPalette::Button, card);
    palette.setColor(QPalette::ToolTipBase, card);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText}) {
        palette.setColor(role, text);
        auto faint = text;
        faint.setAlphaF(0.45F);
        palette.setColor(QPalette::Disabled, role, faint);
    }
    palette.setColor(QPalette::PlaceholderText, color(neutral::secondary));
    palette.setColor(QPalette::Highlight, color(accent::blue.solid));
    palette.setColor(QPalette::HighlightedText, color(neutral::onSolid));
    palette.setColor(QPalette::Link, color(accent::blue.ink));
    palette.setColor(QPalette::LinkVisited, color(accent::purple.ink));
    return palette;
}

Theme::Theme(QWidget &window) : QObject(&window), window(window)
{
    qApp->installEventFilter(this);
    apply();
}

void Theme::follow(ColorScheme &scheme)
{
    scheme.follow([theme = QPointer(this)](unsigned newPreference) {
        if (theme)
            theme->setPreference(newPreference);
    });
}

void Theme::setPreference(unsigned newPreference)
{
    preference = newPreference;
    apply();
}

bool Theme::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == qApp && event->type() == QEvent::ApplicationPaletteChange)
        apply();
    return false;
}

void Theme::apply()
{
    const bool dark = preference == 1 || (preference != 2 && isDark(QApplication::palette()));
    const auto palette = themePalette(dark);
    if (window.palette() != palette)
        window.setPalette(palette);
}

} // namespace orvalen::kit
