#pragma once

#include <compare>
#include <string_view>

namespace tarnvale {

/// Which of two versions is newer, as in "1.2", "v2.0-beta.3" or "1.0rc1".
///
/// Versions are made of numbers and words, whatever stands between them; a "v" in front and everything from a
/// "+" on don't count. The numbers up to the first word decide first, a missing one being 0. Where they are
/// equal, a version with a word is older than one without: it came before the release. Then number by number
/// and word by word; a number is older than a word. Letters compare without case.
[[nodiscard]] std::weak_ordering compareVersions(std::string_view a, std::string_view b);

} // namespace tarnvale
