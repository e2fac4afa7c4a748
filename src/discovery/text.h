#pragma once

#include <charconv>
#include <concepts>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarnvale {

/// `text` with A to Z made lower case; all other bytes as they are.
[[nodiscard]] std::string lowercased(std::string_view text);

/// The pieces of `text` between `separator`s, empty ones included: never an empty list.
[[nodiscard]] std::vector<std::string_view> split(std::string_view text, char separator);

/// The pieces point into the text, so it must not be a passing one.
template<std::same_as<std::string> Text> std::vector<std::string_view> split(Text &&, char) = delete;

/// The non-empty lines of `text`. A carriage return stays in its line.
[[nodiscard]] std::vector<std::string_view> nonEmptyLines(std::string_view text);

/// The bytes that the Unicode white space at the front of `text` takes; 0 when there is none.
[[nodiscard]] std::size_t leadingWhitespace(std::string_view text);

/// Cuts the first word off the front of `text`, leading white space skipped; empty when none is left.
[[nodiscard]] std::string_view takeWord(std::string_view &text);

/// The words of `text` between Unicode white space, at most `limit` of them.
[[nodiscard]] std::vector<std::string_view> words(std::string_view text, std::size_t limit = SIZE_MAX);

/// What follows the last "/", trailing slashes ignored; "/" for the root itself.
[[nodiscard]] std::string_view lastPathComponent(std::string_view path);

/// `path` without its last component and the "/" before it; "/" stays "/".
[[nodiscard]] std::string_view parentPath(std::string_view path);

/// `bytes` as valid UTF-8: each maximal ill-formed part becomes one U+FFFD (Unicode, chapter 3.9).
[[nodiscard]] std::string repairedUtf8(std::string_view bytes);

/// `text` fit for a terminal: valid UTF-8 in which every control, line-breaking and text-direction
/// character is U+FFFD, so that no process can write escape sequences through its name.
[[nodiscard]] std::string printable(std::string_view text);

/// The number of code points in `text`, which must be valid UTF-8.
[[nodiscard]] std::size_t characterCount(std::string_view text);

/// The first `count` code points of `text`, which must be valid UTF-8.
[[nodiscard]] std::string_view firstCharacters(std::string_view text, std::size_t count);

/// A whole base-10 number with an optional sign, and nothing else. Out of range is no number.
template<std::integral Number> [[nodiscard]] std::optional<Number> parseInteger(std::string_view text) {
    if (text.starts_with('+') && !text.substr(1).starts_with('-'))
        text.remove_prefix(1);
    Number number{};
    const char *end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc{} || stop != end)
        return std::nullopt;
    return number;
}

/// A whole finite decimal number and nothing else.
[[nodiscard]] std::optional<double> parseDouble(std::string_view text);

} // namespace tarnvale
