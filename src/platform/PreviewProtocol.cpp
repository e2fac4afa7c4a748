#include "platform/PreviewProtocol.h"

#include "platform/PreviewCapturer.h"

#include <QtEndian>

#include <charconv>

namespace tarnvale {

namespace {

constexpr std::size_t lengthBytes = sizeof(std::uint32_t);

} // namespace

std::string previewRequest(std::int64_t port) {
    return std::to_string(port) + '\n';
}

std::optional<std::int64_t> parsePreviewRequest(std::string_view line) {
    std::int64_t port = 0;
    const char *const end = line.data() + line.size();
    const auto [stop, error] = std::from_chars(line.data(), end, port);
    const bool isPort = error == std::errc() && stop == end && isPreviewPort(port);
    return isPort ? std::optional(port) : std::nullopt;
}

QByteArray previewReply(const QByteArray &picture) {
    const bool isTooLong = picture.size() > PreviewReplies::mostBytes;
    const QByteArray body = isTooLong ? QByteArray() : picture;
    QByteArray reply(lengthBytes, '\0');
    qToBigEndian(static_cast<std::uint32_t>(body.size()), reply.data());
    return reply + body;
}

bool isPreviewPicture(const QByteArray &bytes) {
    // The signature, and of the first chunk its length, its name, the width and the height (PNG, 5.2
    // and 11.2).
    static const QByteArray begin("\x89PNG\r\n\x1a\n\0\0\0\rIHDR", 16);
    constexpr qsizetype headerBytes = 24;
    constexpr std::uint32_t mostHeight = 4 * PreviewCapturer::pictureWidth;
    if (bytes.size() < headerBytes || !bytes.startsWith(begin))
        return false;
    const auto width = qFromBigEndian<std::uint32_t>(bytes.data() + begin.size());
    const auto height = qFromBigEndian<std::uint32_t>(bytes.data() + begin.size() + sizeof width);
    return width == PreviewCapturer::pictureWidth && height > 0 && height <= mostHeight;
}

void PreviewReplies::add(std::string_view piece) {
    if (!m_isBroken)
        m_bytes.append(piece);
}

std::optional<QByteArray> PreviewReplies::next() {
    if (m_isBroken || m_bytes.size() < lengthBytes)
        return std::nullopt;
    const auto length = qFromBigEndian<std::uint32_t>(m_bytes.data());
    if (length > mostBytes) {
        m_isBroken = true;
        m_bytes.clear();
        return std::nullopt;
    }
    if (m_bytes.size() - lengthBytes < length)
        return std::nullopt;
    const QByteArray reply(m_bytes.data() + lengthBytes, static_cast<qsizetype>(length));
    m_bytes.erase(0, lengthBytes + length);
    return reply;
}

} // namespace tarnvale
