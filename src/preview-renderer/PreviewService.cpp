#include "preview-renderer/PreviewService.h"

#include "platform/PreviewProtocol.h"

#include <QCoreApplication>

#include <array>
#include <cerrno>
#include <sysexits.h>
#include <unistd.h>

namespace tarnvale {

PreviewService::PreviewService(FileDescriptor input, FileDescriptor output)
    : m_input(std::move(input)), m_output(std::move(output)) {}

QCoro::Task<> PreviewService::run() {
    QCoro::Task<bool> trial = m_painter.tryOut();
    const bool canDraw = co_await trial;
    if (!canDraw) {
        QCoreApplication::exit(EX_UNAVAILABLE);
        co_return;
    }
    reply({});
    m_notifier = whenReadable(m_input.get(), [this] { read(); });
}

void PreviewService::read() {
    constexpr std::size_t mostRequested = 1 << 12; // far more than one request has
    std::array<char, 256> piece;                   // NOLINT(*-member-init): read(2) fills it
    const ssize_t count = ::read(m_input.get(), piece.data(), piece.size());
    if (count < 0 && errno == EINTR)
        return;
    if (count <= 0 || m_requests.size() > mostRequested) {
        m_notifier.reset();
        QCoreApplication::quit();
        return;
    }
    m_requests.append(piece.data(), static_cast<std::size_t>(count));
    if (!m_isPainting)
        answer();
}

QCoro::Task<> PreviewService::answer() {
    m_isPainting = true;
    for (auto end = m_requests.find('\n'); end != std::string::npos; end = m_requests.find('\n')) {
        const auto port = parsePreviewRequest(std::string_view(m_requests).substr(0, end));
        m_requests.erase(0, end + 1);
        QByteArray picture;
        if (port) {
            QCoro::Task<QByteArray> painting = m_painter.paint(*port);
            picture = co_await painting;
        }
        reply(picture);
    }
    m_isPainting = false;
}

void PreviewService::reply(const QByteArray &picture) {
    const QByteArray bytes = previewReply(picture);
    for (qsizetype written = 0; written < bytes.size();) {
        const ssize_t count =
            write(m_output.get(), bytes.data() + written, static_cast<std::size_t>(bytes.size() - written));
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0) {
            QCoreApplication::quit();
            return;
        }
        written += count;
    }
}

} // namespace tarnvale
