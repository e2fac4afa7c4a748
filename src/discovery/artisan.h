#pragma once

#include "discovery/ProcessDetails.h"

#include <string_view>
#include <unordered_map>

namespace tarnvale {

/// The `artisan serve` process above the one that holds a socket.
struct ArtisanParent {
    Pid pid = 0;
    ProcessDetails details;

    bool operator==(const ArtisanParent &) const = default;
};

/// From the pid of a port's process to its `artisan serve` parent.
using ArtisanMap = std::unordered_map<Pid, ArtisanParent>;

/// Two neighbouring words of `args` are one that ends in "artisan" and "serve".
[[nodiscard]] bool isArtisanServe(std::string_view args);

/// The processes of `details` whose parent, described in `parents`, is an `artisan serve`.
[[nodiscard]] ArtisanMap artisanParents(const ProcessDetailsMap &details, const ProcessDetailsMap &parents);

} // namespace tarnvale
