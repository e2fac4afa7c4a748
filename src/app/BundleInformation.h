#pragma once

#include <string>

namespace tarnvale {

/// What the distributor of this build has said about it. An empty text: nothing.
struct BundleInformation {
    std::string version;
    std::string build;
    std::string feedUrl;   ///< `SUFeedURL`: where newer versions are announced
    std::string publicKey; ///< `SUPublicEDKey`: what they are signed with

    bool operator==(const BundleInformation &) const = default;
};

/// That of this build, as it was configured.
[[nodiscard]] const BundleInformation &bundleInformation();

/// Whether this build may look for newer ones: it must be told where, over HTTPS, and whose signature counts.
[[nodiscard]] bool mayUpdate(const BundleInformation &bundle);

} // namespace tarnvale
