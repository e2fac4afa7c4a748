#pragma once

#include "discovery/ListeningPort.h"

#include <vector>

namespace tarnvale {

class Machine;

/// Which processes hold a listening TCP port right now, and what each of them is: one record for each command
/// and port, sorted by port, then pid.
///
/// Blocks while it reads; call it off the main thread of an application. It never fails: what can't be read
/// leaves its field empty.
[[nodiscard]] std::vector<ListeningPort> scanListeningPorts(Machine &machine);

/// The same of a fresh default machine. Whoever scans again and again keeps a `Machine` instead.
[[nodiscard]] std::vector<ListeningPort> scanListeningPorts();

} // namespace tarnvale
