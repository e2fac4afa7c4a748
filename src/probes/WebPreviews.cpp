#include "probes/WebPreviews.h"

#include "platform/Clock.h"
#include "platform/PreviewCapturer.h"
#include "platform/Settings.h"

#include <QCoroFuture>
#include <QPointer>

#include <algorithm>
#include <set>

namespace tarnvale {

using namespace std::chrono_literals;

namespace {

constexpr auto spacing = 60s;

/// Erases what has a key that isn't wanted; returns the keys.
template<typename Value>
std::vector<std::int64_t> eraseOthers(std::map<std::int64_t, Value> &entries,
                                      const std::set<std::int64_t> &wanted) {
    std::vector<std::int64_t> erased;
    for (const auto &[port, value] : entries)
        if (!wanted.contains(port))
            erased.push_back(port);
    for (const std::int64_t port : erased)
        entries.erase(port);
    return erased;
}

} // namespace

WebPreviews::WebPreviews(const Clock &clock, const Settings &settings, PreviewCapturer &capturer,
                         QObject *parent)
    : QObject(parent), m_clock(clock), m_settings(settings), m_capturer(capturer) {}

bool WebPreviews::isEnabled() const {
    return m_settings.flag(settingsKey).value_or(true);
}

void WebPreviews::update(const std::vector<std::int64_t> &ports) {
    const std::set<std::int64_t> wanted(ports.begin(), ports.end());
    const std::vector<std::int64_t> dropped = eraseOthers(m_previews, wanted);
    eraseOthers(m_attemptedAt, wanted);
    std::erase_if(m_queue, [&](std::int64_t port) { return !wanted.contains(port); });
    if (isEnabled()) {
        std::set<std::int64_t> queued(m_queue.begin(), m_queue.end());
        const Instant now = m_clock.now();
        for (const std::int64_t port : ports) {
            const auto attempt = m_attemptedAt.find(port);
            // A time in the future was told by a clock that has been set back since.
            const bool isDue =
                attempt == m_attemptedAt.end() || now - attempt->second > spacing || attempt->second > now;
            if (isDue && queued.insert(port).second)
                m_queue.push_back(port);
        }
    }
    const QPointer<WebPreviews> alive(this);
    for (const std::int64_t port : dropped) {
        Q_EMIT previewsChanged(port);
        if (!alive)
            return;
    }
    pump();
}

void WebPreviews::refresh(std::int64_t port) {
    std::erase(m_queue, port);
    m_queue.push_front(port);
    pump();
}

QCoro::Task<> WebPreviews::pump() {
    const QPointer<WebPreviews> alive(this);
    while (alive && !m_capturing && !m_queue.empty() && isEnabled()) {
        const std::int64_t port = m_queue.front();
        m_queue.pop_front();
        m_attemptedAt[port] = m_clock.now();
        const QFuture<std::optional<QByteArray>> capture = m_capturer.capture(port);
        setCapturing(port);
        const std::optional<QByteArray> image = co_await capture;
        if (!alive)
            co_return;
        if (image) {
            m_previews[port] = {*image, m_clock.now()};
            Q_EMIT previewsChanged(port);
        }
        if (alive)
            setCapturing(std::nullopt);
    }
}

void WebPreviews::setCapturing(std::optional<std::int64_t> port) {
    m_capturing = port;
    Q_EMIT capturingChanged();
}

} // namespace tarnvale
