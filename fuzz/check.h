#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

/// What libFuzzer calls for each input, and the replay of the corpus, too.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

namespace tarnvale {

/// Ends the program with `rule` on standard error when it doesn't hold.
void check(bool holds, const char *rule);

/// The input as text.
[[nodiscard]] inline std::string_view asText(const std::uint8_t *data, std::size_t size) {
    return {reinterpret_cast<const char *>(data), size};
}

/// The input up to each byte 0xFF, so that one input can be several texts.
[[nodiscard]] std::vector<std::string_view> asTexts(const std::uint8_t *data, std::size_t size);

/// Whether `text` is well-formed (RFC 3629), told in another way than by the code under test.
[[nodiscard]] bool isUtf8(std::string_view text);

/// Calls `visit` with each code point of `text`, which must be well-formed.
template<typename Visit> void forEachCodePoint(std::string_view text, Visit visit) {
    for (std::size_t i = 0; i < text.size();) {
        const auto lead = static_cast<std::uint8_t>(text[i]);
        const std::size_t length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
        std::uint32_t point = length == 1 ? lead : lead & (0xFFu >> (length + 1));
        for (std::size_t k = 1; k < length; ++k)
            point = point << 6 | (static_cast<std::uint8_t>(text[i + k]) & 0x3Fu);
        visit(point);
        i += length;
    }
}

} // namespace tarnvale
