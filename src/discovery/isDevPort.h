#pragma once

#include "discovery/ListeningPort.h"

namespace tarnvale {

/// Whether `port` shows by default. Noise never does; a container's port, a Homebrew service, a known server
/// and whatever works in a folder of its own do; the rest, in practice the system's daemons, doesn't.
[[nodiscard]] bool isDevPort(const ListeningPort &port);

} // namespace tarnvale
