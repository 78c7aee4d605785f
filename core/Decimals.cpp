#include "core/Decimals.h"

#include <ios>
#include <locale>
#include <sstream>
#include <utility>

namespace orvalen {

namespace {

std::string withDecimals(double value, int decimals)
{
    std::ostringstream text; // std::to_chars, which does this, is newer than the oldest macOS that we run on
    text.imbue(std::locale::classic());
    text.precision(decimals);
    text << std::fixed << value;
    return std::move(text).str();
}

} // namespace

std::string noDecimals(double value)
{
    return withDecimals(value, 0);
}

std::string oneDecimal(double value)
{
    return withDecimals(value, 1);
}

} // namespace orvalen
