#pragma once

/// The keys under which the store keeps its values; see docs/data.md.
namespace tarnvale::keys {

inline constexpr const char *watchedPorts = "watchedPorts";
inline constexpr const char *healthPaths = "healthPaths";
inline constexpr const char *stacks = "stacks";
inline constexpr const char *events = "events";

} // namespace tarnvale::keys
