#include "preview-renderer/PageLoad.h"

#include "platform/Clock.h"

#include <QCoroFuture>

#include <utility>

namespace tarnvale {

QFuture<bool> PageLoad::begin() {
    finish(false);
    ++m_attempt;
    m_hasResponse = false;
    m_continuation.emplace();
    m_continuation->start();
    giveUp(this, responseLimit, m_attempt);
    giveUp(this, loadLimit, m_attempt);
    return m_continuation->future();
}

void PageLoad::finish(bool isLoaded) {
    if (!m_continuation)
        return;
    QPromise<bool> continuation = std::move(*m_continuation);
    m_continuation.reset();
    continuation.addResult(isLoaded);
    continuation.finish();
}

QCoro::Task<> PageLoad::giveUp(QPointer<PageLoad> load, std::chrono::milliseconds limit,
                               std::uint64_t attempt) {
    const QFuture<void> slept = load->m_clock.sleep(limit);
    co_await slept;
    const bool isTooLate = load && load->m_attempt == attempt && (limit == loadLimit || !load->m_hasResponse);
    if (isTooLate)
        load->finish(false);
}

} // namespace tarnvale
