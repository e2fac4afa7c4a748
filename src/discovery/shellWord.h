#pragma once

#include <string>
#include <string_view>

namespace tarnvale {

/// `text` in single quotes, as one word of a shell that means nothing but itself.
[[nodiscard]] std::string singleQuoted(std::string_view text);

/// The same, in quotes only where it has to be.
[[nodiscard]] std::string shellWord(std::string_view text);

} // namespace tarnvale
