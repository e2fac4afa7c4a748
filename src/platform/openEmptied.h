#pragma once

#include "discovery/FileDescriptor.h"

#include <expected>
#include <string>

namespace tarnvale {

/// Opens the file at `path` for writing at its end, emptied, or made with the folders above it, for this user
/// alone. Who still writes to it goes on at the new end. Never waits for a reader. The error is an `errno`.
[[nodiscard]] std::expected<FileDescriptor, int> openEmptied(const std::string &path);

} // namespace tarnvale
