#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tarnvale {

/// What stands on the keys of `display`, as in "⌥⌘P", in the words of a PC's keyboard: "Alt", "Super", "P".
/// Texts without modifiers are one cap.
[[nodiscard]] std::vector<std::string> keycaps(std::string_view display);

/// The same in one text: "Alt+Super+P".
[[nodiscard]] std::string displayText(std::string_view display);

/// `display` without the modifiers at its front: "P".
[[nodiscard]] std::string_view keyLabel(std::string_view display);

} // namespace tarnvale
