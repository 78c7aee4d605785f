#include "platform/qt/ColorSchemeOfPalette.h"

namespace orvalen {

void ColorSchemeOfPalette::follow(Receive /*receive*/) {}

} // namespace orvalen
