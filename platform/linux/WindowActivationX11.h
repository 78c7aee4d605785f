#pragma once

class QWindow;

namespace orvalen {

/// Puts a window before all others and gives it the keyboard, because the user asked for it in some other program: in
/// the tray, say. Without X11, as far as the desktop allows.
void bringForwardForUser(QWindow &window);

} // namespace orvalen
