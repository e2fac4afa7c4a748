#pragma once

#include <string>

namespace tarnvale {

/// The helper program that draws pages: beside the executable in the build tree, and in the library folder as
/// installed. Empty where it isn't there.
[[nodiscard]] std::string previewHelperPath();

} // namespace tarnvale
