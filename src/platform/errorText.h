#pragma once

#include <string>

namespace tarnvale {

/// The system's words for `error`, a value of `errno`, in the user's language.
[[nodiscard]] std::string errorText(int error);

/// The same, said of `subject`: "/srv/shop: No such file or directory".
[[nodiscard]] std::string errorText(const std::string &subject, int error);

} // namespace tarnvale
