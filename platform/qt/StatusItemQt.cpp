#include "platform/qt/StatusItemQt.h"

#include <QEvent>
#include <QGuiApplication>
#include <QPalette>
#include <QPointer>
#include <QSystemTrayIcon>

#include <utility>

#include "platform/ColorScheme.h"
#include "platform/qt/TrayHost.h"

namespace orvalen {

namespace {

QString fromUtf8(std::string_view text)
{
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

/// What of a title matters in few pixels: its digits and their sign.
QString numberOf(const QString &title)
{
    QString number = title.trimmed();
    if (number.endsWith(u'°'))
        number.chop(1);
    return number;
}

bool isDark(const QPalette &palette)
{
    return palette.color(QPalette::Window).lightnessF() < palette.color(QPalette::WindowText).lightnessF();
}

} // namespace

StatusItemQt::StatusItemQt(TrayHost &tray, ColorScheme &scheme)
{
    tray.whenPresent([item = QPointer(this)] {
        if (item)
            item->appear();
    });
    scheme.follow([item = QPointer(this)](unsigned preference) {
        if (!item)
            return;
        item->preference = preference;
        item->update();
    });
    qApp->installEventFilter(this);
}

StatusItemQt::~StatusItemQt() = default;

void StatusItemQt::setImage(std::string_view newSymbol, std::string_view accessibilityDescription)
{
    symbol = fromUtf8(newSymbol);
    description = fromUtf8(accessibilityDescription);
    update();
}

void StatusItemQt::setImagePosition(ImagePosition) {}

void StatusItemQt::setTitle(std::string_view newTitle)
{
    title = fromUtf8(newTitle);
    update();
}

void StatusItemQt::setAction(std::function<void()> newAction)
{
    action = std::move(newAction);
}

bool StatusItemQt::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == qApp && event->type() == QEvent::ApplicationPaletteChange)
        update();
    return false;
}

void StatusItemQt::appear()
{
    icon = std::make_unique<QSystemTrayIcon>();
    connect(icon.get(), &QSystemTrayIcon::activated, this, [this](QSystemTrayIcon::ActivationReason reason) {
        // Of two clicks in quick succession Qt reports the second one as a double click.
        if ((reason == QSystemTrayIcon::Trigger || reason == QSystemTrayIcon::DoubleClick) && action)
            action();
    });
    update();
    icon->show();
}

void StatusItemQt::update()
{
    if (!icon)
        return;
    if (const auto wanted = look(); wanted != shown) {
        shown = wanted;
        icon->setIcon(statusIcon(shown));
    }
    if (const auto toolTip = description + title; toolTip != shownToolTip) {
        shownToolTip = toolTip;
        icon->setToolTip(toolTip);
    }
}

StatusLook StatusItemQt::look() const
{
    const bool onDark = preference == 1 || (preference != 2 && isDark(QGuiApplication::palette()));
    return {symbol, numberOf(title), onDark};
}

} // namespace orvalen
