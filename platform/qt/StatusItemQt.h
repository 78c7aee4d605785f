#pragma once

#include <QObject>
#include <QString>

#include <functional>
#include <memory>
#include <string_view>

#include "platform/StatusBar.h"
#include "platform/qt/StatusIcon.h"

class QSystemTrayIcon;

namespace orvalen {

class ColorScheme;
class TrayHost;

/// An icon in the tray, as soon as there is one: the symbol above the title's number, and both in words as its tooltip.
/// White, or near-black where the user prefers a light desktop; no tray says what shade it has itself. Painted anew
/// only when something else is to be seen.
class StatusItemQt : public QObject, public StatusItem, public StatusItemButton
{
public:
    /// Both must outlive it.
    StatusItemQt(TrayHost &tray, ColorScheme &scheme);
    ~StatusItemQt() override;

    [[nodiscard]] StatusItemButton *button() override { return this; }

    void setImage(std::string_view symbol, std::string_view accessibilityDescription) override;
    void setImagePosition(ImagePosition position) override; ///< A square has room for one order only.
    void setTitle(std::string_view title) override;
    void setAction(std::function<void()> action) override;

    /// Null until there is a tray.
    [[nodiscard]] const QSystemTrayIcon *trayIcon() const { return icon.get(); }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void appear();
    void update();
    [[nodiscard]] StatusLook look() const;

    QString symbol;
    QString description;
    QString title;
    std::function<void()> action;
    unsigned preference = 0; ///< As ColorScheme tells it.

    std::unique_ptr<QSystemTrayIcon> icon;
    StatusLook shown; ///< By `icon`, as the tooltip below.
    QString shownToolTip;
};

} // namespace orvalen
