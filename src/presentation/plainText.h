#pragma once

#include "discovery/text.h"

#include <QString>

#include <string_view>

namespace tarnvale {

/// `bytes`, which a process may have written, as text to be shown: UTF-8 repaired, control and text-direction
/// characters replaced.
[[nodiscard]] inline QString plainText(std::string_view bytes) {
    return QString::fromStdString(printable(bytes));
}

/// The same, of at most `longest` characters and then "…": a command line can take megabytes, and is read by
/// a person.
[[nodiscard]] inline QString cutPlainText(std::string_view bytes, std::size_t longest) {
    constexpr std::size_t longestCharacter = 4; // bytes
    const std::string text = printable(bytes.substr(0, (longest + 1) * longestCharacter));
    const std::string_view cut = firstCharacters(text, longest);
    return QString::fromUtf8(cut.data(), static_cast<qsizetype>(cut.size())) +
           (cut.size() < text.size() ? QStringLiteral("…") : QString());
}

} // namespace tarnvale
