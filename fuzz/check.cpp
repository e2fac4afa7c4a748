#include "fuzz/check.h"

#include <cstdio>
#include <cstdlib>

namespace tarnvale {

void check(bool holds, const char *rule) {
    if (holds)
        return;
    std::fprintf(stderr, "broken rule: %s\n", rule);
    std::abort();
}

std::vector<std::string_view> asTexts(const std::uint8_t *data, std::size_t size) {
    std::vector<std::string_view> texts;
    std::string_view rest = asText(data, size);
    for (;;) {
        const std::size_t end = rest.find('\xFF');
        texts.push_back(rest.substr(0, end));
        if (end == rest.npos)
            return texts;
        rest.remove_prefix(end + 1);
    }
}

bool isUtf8(std::string_view text) {
    for (std::size_t i = 0; i < text.size();) {
        const auto byte = [&](std::size_t k) { return static_cast<std::uint8_t>(text[i + k]); };
        std::size_t length = 0;
        while (length < 5 && (byte(0) & (0x80u >> length)) != 0)
            ++length;
        if (length == 0) {
            ++i;
            continue;
        }
        if (length == 1 || length > 4 || i + length > text.size())
            return false;
        std::uint32_t point = byte(0) & (0xFFu >> (length + 1));
        for (std::size_t k = 1; k < length; ++k) {
            if ((byte(k) & 0xC0u) != 0x80u)
                return false;
            point = point << 6 | (byte(k) & 0x3Fu);
        }
        // Longer than needed, a surrogate, or beyond the last code point.
        constexpr std::uint32_t least[]{0, 0, 0x80, 0x800, 0x10000};
        if (point < least[length] || (point >= 0xD800 && point <= 0xDFFF) || point > 0x10FFFF)
            return false;
        i += length;
    }
    return true;
}

} // namespace tarnvale
