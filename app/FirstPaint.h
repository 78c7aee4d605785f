#pragma once

#include <functional>

class QWidget;

namespace orvalen {

/// Runs `task` once, from the event loop: when the window has been painted, or in a second where nobody sees it and it
/// is not painted at all.
void afterFirstPaint(QWidget &window, std::function<void()> task);

} // namespace orvalen
