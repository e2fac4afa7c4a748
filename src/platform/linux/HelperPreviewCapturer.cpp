#include "platform/linux/HelperPreviewCapturer.h"

#include "platform/PreviewProtocol.h"

#include <utility>

namespace tarnvale {

HelperPreviewCapturer::HelperPreviewCapturer(Options options) : m_options(std::move(options)) {
    m_watchdog.setSingleShot(true);
    m_watchdog.setInterval(m_options.patience);
    m_idle.setSingleShot(true);
    m_idle.setInterval(m_options.idleTime);
    QObject::connect(&m_watchdog, &QTimer::timeout, &m_watchdog, [this] { loseHelper(); });
    QObject::connect(&m_idle, &QTimer::timeout, &m_idle, [this] { m_helper.reset(); });
}

HelperPreviewCapturer::~HelperPreviewCapturer() {
    finish(std::nullopt);
}

QFuture<std::optional<QByteArray>> HelperPreviewCapturer::capture(std::int64_t port) {
    QPromise<std::optional<QByteArray>> promise;
    promise.start();
    QFuture<std::optional<QByteArray>> capture = promise.future();
    if (!m_capture && isPreviewPort(port) && (m_helper || startHelper())) {
        m_capture = std::move(promise);
        m_idle.stop();
        m_watchdog.start();
        m_helper->ask(port);
    } else {
        promise.addResult(std::nullopt);
        promise.finish();
    }
    return capture;
}

std::optional<Pid> HelperPreviewCapturer::helper() const {
    return m_helper ? std::optional(m_helper->pid()) : std::nullopt;
}

bool HelperPreviewCapturer::startHelper() {
    const std::string path = m_notBefore.hasExpired() ? m_options.findHelper() : std::string();
    if (path.empty())
        return false;
    m_isReady = false;
    m_helper = PreviewHelper::start(path, {.onReply = [this](const QByteArray &reply) { take(reply); },
                                           .onEnd = [this] { loseHelper(); }});
    if (!m_helper)
        m_notBefore.setRemainingTime(m_options.pause);
    return m_helper != nullptr;
}

void HelperPreviewCapturer::take(const QByteArray &reply) {
    if (!std::exchange(m_isReady, true))
        m_watchdog.start(); // its start isn't the page's fault
    else if (m_capture)
        finish(isPreviewPicture(reply) ? std::optional(reply) : std::nullopt);
    else
        loseHelper(); // nobody had asked
}

/// The helper has ended, or ends now.
void HelperPreviewCapturer::loseHelper() {
    if (!m_isReady)
        m_notBefore.setRemainingTime(m_options.pause);
    m_helper.reset();
    finish(std::nullopt);
}

void HelperPreviewCapturer::finish(const std::optional<QByteArray> &picture) {
    m_watchdog.stop();
    if (!m_capture)
        return;
    QPromise<std::optional<QByteArray>> capture = std::move(*m_capture);
    m_capture.reset();
    if (m_helper)
        m_idle.start();
    capture.addResult(picture);
    capture.finish();
}

} // namespace tarnvale
