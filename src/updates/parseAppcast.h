#pragma once

#include "updates/UpdateItem.h"

#include <QByteArray>

#include <cstdint>
#include <expected>
#include <vector>

namespace tarnvale {

/// No feed is larger.
inline constexpr qsizetype mostFeedBytes = qsizetype{4} << 20;

enum class FeedError : std::uint8_t {
    tooLarge,
    malformed, ///< no well-formed XML, or cut short
    notAFeed,  ///< XML, but of another kind, or of a kind that a feed has no need for: with a document type
};

/// What `feed` offers to this system, in its order: RSS 2.0 with the extensions of the namespace
/// http://www.andymatuschak.org/xml-namespaces/sparkle, as its generators write it.
///
/// Items that can't be used are left out: those of another system or of a channel, and those without a
/// version, an HTTPS address, a length or a signature of the right form. Long notes are cut.
[[nodiscard]] std::expected<std::vector<UpdateItem>, FeedError> parseAppcast(const QByteArray &feed);

} // namespace tarnvale
