#pragma once

#include <cstdint>
#include <string>

namespace tarnvale {

/// Base64 of 64 bytes: no signature of anything, but of the right form.
[[nodiscard]] std::string someSignature();

/// An item of a feed. An empty text, and a length of 0, leaves its element or attribute out.
struct FeedItemText {
    std::string version = "42";
    std::string shortVersion = "2.0";
    std::string url = "https://updates.example/Tarnvale-2.0.deb";
    std::int64_t length = 1024;
    std::string signature = someSignature();
    std::string system = "linux";
    std::string notes = "<ul><li>Faster</li></ul>";
    std::string more = {}; ///< further elements

    [[nodiscard]] std::string text() const;
};

/// A feed of these items, each made by `FeedItemText::text` or written by hand.
[[nodiscard]] std::string feedOf(const std::string &items);

} // namespace tarnvale
