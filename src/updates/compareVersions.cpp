#include "updates/compareVersions.h"

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

namespace tarnvale {

namespace {

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

bool isLetter(char c) {
    // Bytes of other letters than those of ASCII belong to words.
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || static_cast<unsigned char>(c) >= 0x80;
}

char lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

/// A number without its leading zeros (so "0" is empty), which may be longer than any integer, or a word.
struct Part {
    bool isWord = false;
    std::string text;

    bool operator==(const Part &) const = default;
};

std::weak_ordering compareParts(const Part &a, const Part &b) {
    if (a.isWord != b.isWord)
        return a.isWord ? std::weak_ordering::greater : std::weak_ordering::less;
    if (!a.isWord && a.text.size() != b.text.size())
        return a.text.size() <=> b.text.size();
    return a.text <=> b.text;
}

Part takePart(std::string_view &text) {
    Part part{.isWord = isLetter(text.front()), .text = {}};
    while (!text.empty() && (part.isWord ? isLetter(text.front()) : isDigit(text.front()))) {
        if (part.isWord || text.front() != '0' || !part.text.empty())
            part.text += lower(text.front());
        text.remove_prefix(1);
    }
    return part;
}

/// "1.0-beta.3": the release 1.0, of which this came before, and what it was then: "beta", 3.
struct Version {
    std::vector<Part> release; ///< numbers, without zeros at the end
    std::vector<Part> before;  ///< empty: the release itself
};

Version parseVersion(std::string_view text) {
    text = text.substr(0, text.find('+'));
    if (text.size() > 1 && lower(text[0]) == 'v' && isDigit(text[1]))
        text.remove_prefix(1);
    Version version;
    while (!text.empty()) {
        if (!isDigit(text.front()) && !isLetter(text.front())) {
            text.remove_prefix(1);
            continue;
        }
        Part part = takePart(text);
        auto &parts = part.isWord || !version.before.empty() ? version.before : version.release;
        parts.push_back(std::move(part));
    }
    while (!version.release.empty() && version.release.back().text.empty())
        version.release.pop_back();
    return version;
}

std::weak_ordering compareLists(const std::vector<Part> &a, const std::vector<Part> &b) {
    for (std::size_t i = 0; i < std::min(a.size(), b.size()); ++i)
        if (const auto order = compareParts(a[i], b[i]); order != 0)
            return order;
    return a.size() <=> b.size();
}

} // namespace

std::weak_ordering compareVersions(std::string_view a, std::string_view b) {
    const Version left = parseVersion(a);
    const Version right = parseVersion(b);
    if (const auto order = compareLists(left.release, right.release); order != 0)
        return order;
    if (left.before.empty() != right.before.empty())
        return left.before.empty() ? std::weak_ordering::greater : std::weak_ordering::less;
    return compareLists(left.before, right.before);
}

} // namespace tarnvale
