#pragma once

#include "discovery/Instant.h"

#include <QByteArray>
#include <QCoroTask>
#include <QObject>

#include <cstdint>
#include <deque>
#include <map>
#include <optional>
#include <vector>

namespace tarnvale {

class Clock;
class PreviewCapturer;
class Settings;

/// Pictures of the front pages of web servers, in memory alone. They are taken one at a time off a queue, and
/// each port's is renewed about once a minute for as long as it is worth showing.
///
/// Main thread. It is settled before a signal is emitted, so who hears one may ask for more, or end it.
class WebPreviews : public QObject {
    Q_OBJECT

public:
    struct Preview {
        QByteArray image; ///< encoded, `PreviewCapturer::pictureWidth` wide
        Instant capturedAt;

        bool operator==(const Preview &) const = default;
    };

    /// The user's choice whether pages are loaded; absent, or no Boolean, it is yes.
    static constexpr const char *settingsKey = "showWebPreviews";

    /// All three outlive this object.
    WebPreviews(const Clock &clock, const Settings &settings, PreviewCapturer &capturer,
                QObject *parent = nullptr);

    /// By port.
    [[nodiscard]] const std::map<std::int64_t, Preview> &previews() const { return m_previews; }
    /// The port whose page is being loaded.
    [[nodiscard]] const std::optional<std::int64_t> &capturing() const { return m_capturing; }
    /// The ports that wait, the next one first.
    [[nodiscard]] const std::deque<std::int64_t> &queue() const { return m_queue; }
    /// When each port's last capture began.
    [[nodiscard]] const std::map<std::int64_t, Instant> &attemptedAt() const { return m_attemptedAt; }

    /// The user wants previews. Read anew each time; while it is false, no page load starts.
    [[nodiscard]] bool isEnabled() const;

    /// Takes the ports worth showing, in order: forgets all others, and queues those that weren't tried in
    /// the last minute. A capture that is under way ends as it would have.
    void update(const std::vector<std::int64_t> &ports);

    /// Puts a port at the front of the queue, however recently it was tried.
    void refresh(std::int64_t port);

Q_SIGNALS:
    /// The picture of `port` is another one, or gone.
    void previewsChanged(std::int64_t port);
    void capturingChanged();

private:
    QCoro::Task<> pump();
    void setCapturing(std::optional<std::int64_t> port);

    const Clock &m_clock;
    const Settings &m_settings;
    PreviewCapturer &m_capturer;
    std::map<std::int64_t, Preview> m_previews;
    std::optional<std::int64_t> m_capturing;
    std::deque<std::int64_t> m_queue;
    std::map<std::int64_t, Instant> m_attemptedAt;
};

} // namespace tarnvale
