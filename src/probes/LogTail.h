#pragma once

#include "probes/LogSource.h"

#include <QCoroTask>
#include <QFuture>
#include <QObject>
#include <QPointer>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tarnvale {

class Clock;
class Tools;

/// Follows one log by reading its end anew, a file every second and a container every three. A read replaces
/// the whole text; nothing is kept between reads.
///
/// Main thread. The reads themselves run on background threads, at most one of a container at a time, and end
/// without harm when this object has gone.
class LogTail : public QObject {
    Q_OBJECT

public:
    /// Both must outlive this object, and `tools` the reads that it began.
    LogTail(Clock &clock, const Tools &tools, QObject *parent = nullptr);

    /// The last read, escape sequences included; empty when there is nothing to read.
    [[nodiscard]] const std::string &text() const { return m_text; }

    /// `text()` made fit to show; see `logLines`.
    [[nodiscard]] std::vector<std::string> lines() const;

    [[nodiscard]] const std::optional<LogSource> &source() const { return m_source; }

    /// While it is paused nothing is read. It stays paused when it is given another source.
    [[nodiscard]] bool isPaused() const { return m_isPaused; }
    void setPaused(bool isPaused);

    /// Empties the text and reads `source` from now on, at once and then at its rate; nothing at all without
    /// one. The source that is being followed already goes on undisturbed.
    void follow(const std::optional<LogSource> &source);

    /// Ends the reads. Source and text stay.
    void stop();

Q_SIGNALS:
    void textChanged();
    void sourceChanged();
    void isPausedChanged();

private:
    static QCoro::Task<> poll(QPointer<LogTail> tail, std::uint64_t round);
    [[nodiscard]] QFuture<std::string> read();
    void setText(const std::string &text);

    Clock &m_clock;
    const Tools &m_tools;
    std::string m_text;
    std::optional<LogSource> m_source;
    bool m_isPaused = false;
    bool m_isFollowing = false;
    std::uint64_t m_round = 0; ///< counts the loops; an older one ends at its next step
    QFuture<std::string> m_containerRead;
};

} // namespace tarnvale
