#pragma once

#include <string_view>

namespace tarnvale {

/// Whether `path` may be asked for in a health check: it begins with "/", has at most 200 characters, and all
/// of them are printable ASCII other than a blank. So no path can end the request line or add a header.
[[nodiscard]] bool isValidHealthPath(std::string_view path);

} // namespace tarnvale
