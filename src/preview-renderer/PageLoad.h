#pragma once

#include <QCoroTask>
#include <QFuture>
#include <QObject>
#include <QPointer>
#include <QPromise>

#include <chrono>
#include <cstdint>
#include <optional>

namespace tarnvale {

class Clock;

/// The wait for the end of a page's load: it has finished or failed, or it takes too long. Main thread.
class PageLoad : public QObject {
public:
    /// A server that sends nothing at all is given up after this.
    static constexpr auto responseLimit = std::chrono::seconds(8);
    static constexpr auto loadLimit = std::chrono::seconds(10);

    /// `clock` outlives this object.
    explicit PageLoad(Clock &clock) : m_clock(clock) {}
    PageLoad(const PageLoad &) = delete;
    PageLoad &operator=(const PageLoad &) = delete;
    ~PageLoad() override { finish(false); }

    /// Begins to wait; an earlier wait ends with false. The result is whether the page has finished.
    [[nodiscard]] QFuture<bool> begin();

    /// The server has answered.
    void respond() { m_hasResponse = true; }

    /// Ends the wait. Nothing when there is none.
    void finish(bool isLoaded);

private:
    /// Ends the wait of a number after a time, unless that load has done what it had to until then.
    static QCoro::Task<> giveUp(QPointer<PageLoad> load, std::chrono::milliseconds limit,
                                std::uint64_t attempt);

    Clock &m_clock;
    std::optional<QPromise<bool>> m_continuation;
    std::uint64_t m_attempt = 0; ///< counts the loads; the timers of an older one do nothing
    bool m_hasResponse = false;
};

} // namespace tarnvale
