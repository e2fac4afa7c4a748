#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace tarnvale {

/// The IPv4 address of this machine on the local network, in dotted form; nothing without a network. See
/// `chooseLanAddress` for which one. Any thread.
[[nodiscard]] std::optional<std::string> lanAddress();

/// The URL under which other devices reach `port`, "http://192.168.1.20:5173"; nothing without a network.
[[nodiscard]] std::optional<std::string> lanURL(std::int64_t port);

} // namespace tarnvale
