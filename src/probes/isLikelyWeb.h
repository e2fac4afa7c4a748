#pragma once

#include "discovery/ListeningPort.h"

namespace tarnvale {

/// Whether `port` may speak HTTP, guessed from its number and its names alone: everything may that is no
/// known database, queue, cache or shell server.
[[nodiscard]] bool isLikelyWeb(const ListeningPort &port);

} // namespace tarnvale
