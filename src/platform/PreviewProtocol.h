#pragma once

#include <QByteArray>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

// What the application and its helper program, which draws pages, say to each other.
//
// The application writes a port in decimal and a line feed to the helper's standard input, and writes the
// next one only when that is answered. The helper writes replies to its standard output: the length of what
// follows, in four bytes, the highest first, and then the picture, an image in the format PNG; a length of 0
// is "no picture". Its first reply, empty, is to no request: the helper is ready. It leaves when its input
// ends.

namespace tarnvale {

/// Whether a port can be asked for.
[[nodiscard]] constexpr bool isPreviewPort(std::int64_t port) {
    return port >= 1 && port <= 65535;
}

/// Asks for the page of a port.
[[nodiscard]] std::string previewRequest(std::int64_t port);

/// The port in a line without its end; nothing when it is none.
[[nodiscard]] std::optional<std::int64_t> parsePreviewRequest(std::string_view line);

/// Puts a picture, or none, into a reply.
[[nodiscard]] QByteArray previewReply(const QByteArray &picture);

/// Whether `bytes` begin as an image in the format PNG of a picture's width, and of no more height than a
/// viewer can bear.
[[nodiscard]] bool isPreviewPicture(const QByteArray &bytes);

/// Takes the helper's output apart, however it arrives.
class PreviewReplies {
public:
    /// No picture has more bytes.
    static constexpr std::uint32_t mostBytes = 4 << 20;

    void add(std::string_view piece);

    /// The next whole reply, taken out; it may be anything but too long.
    [[nodiscard]] std::optional<QByteArray> next();

    /// A reply claims to be too long; nothing more is read then.
    [[nodiscard]] bool isBroken() const { return m_isBroken; }

private:
    std::string m_bytes;
    bool m_isBroken = false;
};

} // namespace tarnvale
