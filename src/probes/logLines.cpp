#include "probes/logLines.h"

#include "discovery/text.h"

namespace tarnvale {

namespace {

constexpr std::string_view introducer = "\x1B[";

/// The length of the control sequence at the front of `text`; 0 when there is none, or none that is known.
std::size_t sequenceLength(std::string_view text) {
    constexpr std::string_view parameters = "0123456789;?";
    if (!text.starts_with(introducer))
        return 0;
    const std::size_t last = text.find_first_not_of(parameters, introducer.size());
    if (last == text.npos)
        return 0;
    const char letter = text[last];
    const bool isLetter = (letter >= 'A' && letter <= 'Z') || (letter >= 'a' && letter <= 'z');
    return isLetter ? last + 1 : 0;
}

std::string withoutSequences(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    for (;;) {
        const std::size_t start = text.find(introducer);
        result += text.substr(0, start);
        if (start == text.npos)
            return result;
        text.remove_prefix(start);
        const std::size_t length = sequenceLength(text);
        if (length == 0)
            result += introducer;
        text.remove_prefix(length == 0 ? introducer.size() : length);
    }
}

bool containsAny(std::string_view text, std::initializer_list<std::string_view> words) {
    for (const std::string_view word : words)
        if (text.find(word) != text.npos)
            return true;
    return false;
}

} // namespace

std::vector<std::string> logLines(std::string_view text) {
    constexpr std::size_t most = 400;
    const std::string clean = withoutSequences(text);
    const std::vector<std::string_view> lines = split(clean, '\n');
    const std::size_t dropped = lines.size() > most ? lines.size() - most : 0;
    return {lines.begin() + static_cast<std::ptrdiff_t>(dropped), lines.end()};
}

LogLineKind logLineKind(std::string_view line) {
    const std::string text = lowercased(line);
    if (containsAny(text, {"error", "exception", "fatal"}))
        return LogLineKind::error;
    return containsAny(text, {"warn"}) ? LogLineKind::warning : LogLineKind::plain;
}

} // namespace tarnvale
