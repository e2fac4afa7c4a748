#include "platform/Utf8Stream.h"

#include "discovery/text.h"

#include <algorithm>
#include <utility>

namespace tarnvale {

namespace {

/// The bytes of a character that begins with `lead`; 0 when none does.
std::size_t lengthBy(char lead) {
    const auto byte = static_cast<unsigned char>(lead);
    if (byte < 0x80)
        return 1;
    if (byte < 0xC2 || byte > 0xF4)
        return 0;
    return byte < 0xE0 ? 2 : byte < 0xF0 ? 3 : 4;
}

bool isContinuation(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

/// How many bytes at the end of `bytes` may be the begin of a character. A cut before a lead byte never
/// divides one.
std::size_t openBytes(std::string_view bytes) {
    constexpr std::size_t longestOpen = 3;
    for (std::size_t count = 1; count <= std::min(longestOpen, bytes.size()); ++count) {
        const char byte = bytes[bytes.size() - count];
        if (!isContinuation(byte))
            return lengthBy(byte) > count ? count : 0;
    }
    return 0;
}

} // namespace

std::string Utf8Stream::take(std::string_view bytes) {
    std::string all = std::exchange(m_rest, {});
    all += bytes;
    const std::size_t open = openBytes(all);
    m_rest = all.substr(all.size() - open);
    all.erase(all.size() - open);
    return repairedUtf8(all);
}

std::string Utf8Stream::finish() {
    return repairedUtf8(std::exchange(m_rest, {}));
}

} // namespace tarnvale
