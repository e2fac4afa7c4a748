#pragma once

#include "discovery/Instant.h"

#include <cstdint>
#include <optional>
#include <string>

namespace tarnvale {

/// More than this is never downloaded.
inline constexpr std::int64_t mostUpdateBytes = std::int64_t{2} << 30;

/// A version that a feed offers. It comes from outside; the texts are valid UTF-8 without control characters.
struct UpdateItem {
    std::string version;              ///< what decides which of two is newer, at most 64 characters
    std::string shortVersion;         ///< what users call it; the same as `version` where the feed has none
    std::string title;                ///< may be empty, as what follows
    std::string notes;                ///< plain text in lines, at most 64 KiB
    std::string notesUrl;             ///< an HTTPS address
    std::optional<Instant> published; ///< nothing: unknown
    std::string url;                  ///< an HTTPS address
    std::int64_t length = 0;          ///< bytes, from 1 to `mostUpdateBytes`
    std::string type;                 ///< a media type; may be empty
    std::string signature;            ///< of the file: Ed25519 in Base64
    bool isForLinux = false;          ///< the feed says so; otherwise it is for every system

    /// The version, for the user.
    [[nodiscard]] const std::string &name() const { return shortVersion.empty() ? version : shortVersion; }

    bool operator==(const UpdateItem &) const = default;
};

} // namespace tarnvale
