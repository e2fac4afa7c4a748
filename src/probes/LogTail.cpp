#include "probes/LogTail.h"

#include "platform/Clock.h"
#include "platform/background.h"
#include "probes/logLines.h"
#include "probes/readLogSource.h"

#include <QCoroFuture>

namespace tarnvale {

LogTail::LogTail(Clock &clock, const Tools &tools, QObject *parent)
    : QObject(parent), m_clock(clock), m_tools(tools) {}

std::vector<std::string> LogTail::lines() const {
    return logLines(m_text);
}

void LogTail::setPaused(bool isPaused) {
    if (m_isPaused == isPaused)
        return;
    m_isPaused = isPaused;
    Q_EMIT isPausedChanged();
}

void LogTail::follow(const std::optional<LogSource> &source) {
    if (m_isFollowing && source == m_source)
        return;
    stop();
    const std::uint64_t round = m_round;
    const bool isOther = source != m_source;
    const bool hadText = !m_text.empty();
    m_source = source;
    m_text.clear();
    m_isFollowing = source.has_value();
    // Who hears of a change may follow something else, or end this object.
    const QPointer<LogTail> alive(this);
    if (isOther)
        Q_EMIT sourceChanged();
    if (alive && hadText)
        Q_EMIT textChanged();
    if (!alive || m_round != round || !m_isFollowing)
        return;
    // Not from here: of several sources in a row only the last is worth reading.
    const auto begin = [this, round] {
        if (m_round == round)
            poll(this, round);
    };
    QMetaObject::invokeMethod(this, begin, Qt::QueuedConnection);
}

void LogTail::stop() {
    m_isFollowing = false;
    ++m_round;
}

QCoro::Task<> LogTail::poll(QPointer<LogTail> tail, std::uint64_t round) {
    const auto isOver = [&] { return !tail || tail->m_round != round; };
    const bool isContainer = tail->m_source->kind == LogSource::Kind::docker;
    const std::chrono::milliseconds rate = std::chrono::seconds(isContainer ? 3 : 1);
    if (isContainer) {
        // What hangs in one container's engine must not gather one more process at every change of source.
        const QFuture<std::string> earlier = tail->m_containerRead;
        if (earlier.isRunning())
            co_await earlier;
    }
    while (!isOver()) {
        if (!tail->m_isPaused) {
            const QFuture<std::string> reading = tail->read();
            const std::string text = co_await reading;
            if (isOver())
                co_return;
            tail->setText(text);
        }
        if (isOver())
            co_return;
        const QFuture<void> sleep = tail->m_clock.sleep(rate);
        co_await sleep;
    }
}

QFuture<std::string> LogTail::read() {
    const auto work = [source = *m_source, tools = &m_tools] { return readLogSource(source, *tools); };
    QFuture<std::string> reading = inBackground(work);
    if (m_source->kind == LogSource::Kind::docker)
        m_containerRead = reading;
    return reading;
}

void LogTail::setText(const std::string &text) {
    if (m_text == text)
        return;
    m_text = text;
    Q_EMIT textChanged();
}

} // namespace tarnvale
