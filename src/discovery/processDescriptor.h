#pragma once

#include "discovery/FileDescriptor.h"

#include <sys/types.h>

namespace tarnvale {

/// A descriptor that means the process which is `pid` now, and none that gets the number later; it becomes
/// readable when the process has ended. Not open, with `errno` set, when there is no such process, or where
/// the system has no such descriptors (ENOSYS).
[[nodiscard]] FileDescriptor openProcessDescriptor(pid_t pid);

} // namespace tarnvale
