#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarnvale {

/// What a local PHP environment tells of its sites in its "config.json".
struct SitesConfig {
    std::vector<std::string> paths; ///< folders whose subfolders are sites
    std::string tld;                ///< top-level domain without the dot

    bool operator==(const SitesConfig &) const = default;
};

/// The keys under which the top-level domain may stand.
enum class TldKeys : std::uint8_t {
    tld,
    tldOrDomain, ///< older files say "domain"; "tld" wins
};

/// The two keys of `json` that count; nothing when it is no JSON object, or one of them is missing or of
/// another type.
[[nodiscard]] std::optional<SitesConfig> parseSitesConfig(std::string_view json, TldKeys keys);

} // namespace tarnvale
