#pragma once

#include <QObject>
#include <QPalette>

class QWidget;

namespace orvalen {

class ColorScheme;

namespace kit {

/// What the widgets ask of a palette: is it a dark one?
[[nodiscard]] bool isDark(const QPalette &palette);

/// The palette of one of our two themes.
[[nodiscard]] QPalette themePalette(bool dark);

/// Keeps a window in the theme that its user prefers: the desktop's colour scheme if that says one, else whichever the
/// system's own palette looks like; changes at run time included. The application's palette stays the system's, so
/// menus and dialogs that are not ours look as everywhere else.
class Theme : public QObject
{
public:
    /// The theme is the window's child.
    explicit Theme(QWidget &window);

    /// From now on as `scheme` says, for as long as both live.
    void follow(ColorScheme &scheme);

    /// `preference` as ColorScheme gives it: 1 dark, 2 light, else none.
    void setPreference(unsigned preference);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void apply();

    QWidget &window;
    unsigned preference = 0;
};

} // namespace kit
} // namespace orvalen
