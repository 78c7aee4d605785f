#pragma once

#include <string_view>

namespace orvalen {

/// The page that shows the stream: the contents of viewer.html.
[[nodiscard]] std::string_view viewerPage();

} // namespace orvalen
