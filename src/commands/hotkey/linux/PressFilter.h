#pragma once

#include <cstdint>
#include <optional>

namespace tarnvale {

/// Tells presses of a key from its repetition while it is held. An X server repeats a held key as a release
/// and a press of the same millisecond; a finger can't do that.
class PressFilter {
public:
    /// Whether a press at the server's `time` is one.
    [[nodiscard]] bool isPress(std::uint32_t time) const { return time != m_released; }

    void release(std::uint32_t time) { m_released = time; }

private:
    std::optional<std::uint32_t> m_released;
};

} // namespace tarnvale
