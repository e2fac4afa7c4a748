#pragma once

#include <QString>

#include <string>

namespace tarnvale {

/// A name for what is downloaded from `url`, as in "Tarnvale-2.0.deb": the last part of its path, decoded, in
/// letters, digits, blanks and "-_.+~" of ASCII, others replaced by "_". It is no path, isn't hidden, doesn't
/// look like an option, and has at most 120 characters with its endings kept. "Tarnvale-update" where nothing
/// is left.
[[nodiscard]] QString safeFileName(const std::string &url);

/// `name` with " (number)" before its endings: "Tarnvale-2.0 (1).deb", "app (2).tar.gz"; itself for 0.
[[nodiscard]] QString numberedName(const QString &name, int number);

} // namespace tarnvale
