#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tarnvale {

/// A combination of keys. Its numbers are the Mac's on every system, so that what is stored means the same
/// everywhere: `keyCode` names a position on the keyboard, whatever the layout writes there.
struct Shortcut {
    std::uint32_t keyCode = 35;            ///< virtual key code (`kVK_...` of Events.h in Carbon's HIToolbox)
    std::uint32_t carbonModifiers = 0x900; ///< bits of `CarbonModifier`
    std::string display = "⌥⌘P";

    bool operator==(const Shortcut &) const = default;
};

/// The bits of `carbonModifiers` (`cmdKey` and its kin of Events.h).
namespace CarbonModifier {

inline constexpr std::uint32_t command = 0x100;
inline constexpr std::uint32_t shift = 0x200;
inline constexpr std::uint32_t option = 0x800;
inline constexpr std::uint32_t control = 0x1000;

} // namespace CarbonModifier

/// The stored form: a JSON object with the fields of the record. Nothing when `display` isn't UTF-8.
[[nodiscard]] std::optional<std::string> encodeShortcut(const Shortcut &shortcut);

/// Nothing when a field is missing or of another kind. Other fields are skipped.
[[nodiscard]] std::optional<Shortcut> decodeShortcut(std::string_view json);

} // namespace tarnvale
