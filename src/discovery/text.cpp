#include "discovery/text.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace tarnvale {

namespace {

constexpr std::string_view replacement = "\xEF\xBF\xBD";

/// The length of the well-formed sequence at the front of `bytes`, or minus the length of the
/// ill-formed part (Unicode, table 3-7).
int sequenceLength(std::string_view bytes) {
    const auto at = [&](std::size_t i) { return static_cast<unsigned char>(bytes[i]); };
    const unsigned char lead = at(0);
    if (lead < 0x80)
        return 1;
    unsigned char low = 0x80;
    unsigned char high = 0xBF;
    int length = 0;
    if (lead >= 0xC2 && lead <= 0xDF) {
        length = 2;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
        length = 3;
        low = lead == 0xE0 ? 0xA0 : low;
        high = lead == 0xED ? 0x9F : high;
    } else if (lead >= 0xF0 && lead <= 0xF4) {
        length = 4;
        low = lead == 0xF0 ? 0x90 : low;
        high = lead == 0xF4 ? 0x8F : high;
    } else {
        return -1;
    }
    for (int i = 1; i < length; ++i) {
        const auto position = static_cast<std::size_t>(i);
        if (position >= bytes.size() || at(position) < low || at(position) > high)
            return -i;
        low = 0x80;
        high = 0xBF;
    }
    return length;
}

/// The code point of a well-formed sequence.
char32_t codePoint(std::string_view sequence) {
    if (sequence.size() == 1)
        return static_cast<unsigned char>(sequence[0]);
    static constexpr std::array<unsigned char, 5> leadMask{0, 0, 0x1F, 0x0F, 0x07};
    char32_t point = static_cast<unsigned char>(sequence[0]) & leadMask.at(sequence.size());
    for (const char byte : sequence.substr(1))
        point = (point << 6) | (static_cast<unsigned char>(byte) & 0x3Fu);
    return point;
}

/// The White_Space property of Unicode's PropList.txt.
bool isWhitespace(char32_t point) {
    return (point >= 0x09 && point <= 0x0D) || point == 0x20 || point == 0x85 || point == 0xA0 ||
           point == 0x1680 || (point >= 0x2000 && point <= 0x200A) || point == 0x2028 || point == 0x2029 ||
           point == 0x202F || point == 0x205F || point == 0x3000;
}

/// C0, DEL, C1, the line and paragraph separators and the bidirectional controls.
bool isUnprintable(char32_t point) {
    return point < 0x20 || (point >= 0x7F && point <= 0x9F) || point == 0x061C || point == 0x200E ||
           point == 0x200F || (point >= 0x2028 && point <= 0x202E) || (point >= 0x2066 && point <= 0x2069);
}

bool isContinuation(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

std::string_view withoutTrailingSlashes(std::string_view path) {
    while (path.size() > 1 && path.ends_with('/'))
        path.remove_suffix(1);
    return path;
}

} // namespace

std::string lowercased(std::string_view text) {
    std::string result(text);
    for (char &c : result)
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c - 'A' + 'a');
    return result;
}

std::vector<std::string_view> split(std::string_view text, char separator) {
    std::vector<std::string_view> pieces;
    for (;;) {
        const std::size_t end = text.find(separator);
        pieces.push_back(text.substr(0, end));
        if (end == std::string_view::npos)
            return pieces;
        text.remove_prefix(end + 1);
    }
}

std::vector<std::string_view> nonEmptyLines(std::string_view text) {
    std::vector<std::string_view> lines = split(text, '\n');
    std::erase_if(lines, [](std::string_view line) { return line.empty(); });
    return lines;
}

std::size_t leadingWhitespace(std::string_view text) {
    std::size_t position = 0;
    while (position < text.size()) {
        const int length = sequenceLength(text.substr(position));
        if (length < 0 || !isWhitespace(codePoint(text.substr(position, static_cast<std::size_t>(length)))))
            break;
        position += static_cast<std::size_t>(length);
    }
    return position;
}

std::string_view takeWord(std::string_view &text) {
    text.remove_prefix(leadingWhitespace(text));
    std::size_t end = 0;
    while (end < text.size() && leadingWhitespace(text.substr(end)) == 0)
        end += static_cast<std::size_t>(std::abs(sequenceLength(text.substr(end))));
    const std::string_view word = text.substr(0, end);
    text.remove_prefix(end);
    return word;
}

std::vector<std::string_view> words(std::string_view text, std::size_t limit) {
    std::vector<std::string_view> result;
    while (result.size() < limit) {
        const std::string_view word = takeWord(text);
        if (word.empty())
            break;
        result.push_back(word);
    }
    return result;
}

std::string_view lastPathComponent(std::string_view path) {
    path = withoutTrailingSlashes(path);
    if (path == "/")
        return path;
    const std::size_t slash = path.rfind('/');
    return slash == std::string_view::npos ? path : path.substr(slash + 1);
}

std::string_view parentPath(std::string_view path) {
    path = withoutTrailingSlashes(path);
    const std::size_t slash = path.rfind('/');
    if (slash == std::string_view::npos)
        return {};
    return withoutTrailingSlashes(path.substr(0, std::max<std::size_t>(slash, 1)));
}

std::string repairedUtf8(std::string_view bytes) {
    const bool isAscii =
        std::all_of(bytes.begin(), bytes.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
    if (isAscii)
        return std::string(bytes);
    std::string result;
    result.reserve(bytes.size());
    while (!bytes.empty()) {
        const int length = sequenceLength(bytes);
        const auto taken = static_cast<std::size_t>(std::abs(length));
        result += length < 0 ? replacement : bytes.substr(0, taken);
        bytes.remove_prefix(taken);
    }
    return result;
}

std::string printable(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    while (!text.empty()) {
        const int length = sequenceLength(text);
        const auto taken = static_cast<std::size_t>(std::abs(length));
        const bool isFit = length > 0 && !isUnprintable(codePoint(text.substr(0, taken)));
        result += isFit ? text.substr(0, taken) : replacement;
        text.remove_prefix(taken);
    }
    return result;
}

std::size_t characterCount(std::string_view text) {
    return static_cast<std::size_t>(
        std::count_if(text.begin(), text.end(), [](char byte) { return !isContinuation(byte); }));
}

std::string_view firstCharacters(std::string_view text, std::size_t count) {
    std::size_t end = 0;
    while (end < text.size() && (count > 0 || isContinuation(text[end]))) {
        if (!isContinuation(text[end]))
            --count;
        ++end;
    }
    return text.substr(0, end);
}

std::optional<double> parseDouble(std::string_view text) {
    if (text.starts_with('+') && !text.substr(1).starts_with('-'))
        text.remove_prefix(1);
    double number = 0;
    const char *end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc{} || stop != end || !std::isfinite(number))
        return std::nullopt;
    return number;
}

} // namespace tarnvale
