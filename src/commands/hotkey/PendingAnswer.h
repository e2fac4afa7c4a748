#pragma once

#include "commands/hotkey/HotKeyRegistrar.h"

#include <QPromise>

#include <optional>

namespace tarnvale {

/// The answer to the last question, until it is given. No question stays without one: the next one, and the
/// end of this object, answer what still waits with `abandoned`.
template<typename Answer> class PendingAnswer {
public:
    explicit PendingAnswer(Answer abandoned) : m_abandoned(std::move(abandoned)) {}
    PendingAnswer(const PendingAnswer &) = delete;
    PendingAnswer &operator=(const PendingAnswer &) = delete;
    ~PendingAnswer() { abandon(); }

    [[nodiscard]] QFuture<Answer> begin() {
        abandon();
        m_promise.emplace();
        m_promise->start();
        return m_promise->future();
    }

    /// Nothing happens when no question waits.
    void give(const Answer &answer) {
        if (!m_promise)
            return;
        QPromise<Answer> promise = std::move(*m_promise);
        m_promise.reset();
        promise.addResult(answer);
        promise.finish();
    }

    void abandon() { give(m_abandoned); }

private:
    std::optional<QPromise<Answer>> m_promise;
    Answer m_abandoned;
};

class PendingOutcome : public PendingAnswer<HotKeyOutcome> {
public:
    PendingOutcome() : PendingAnswer(std::unexpected(HotKeyFailure::abandoned)) {}
};

/// An answer that needs no waiting.
[[nodiscard]] inline QFuture<HotKeyOutcome> answered(const HotKeyOutcome &outcome) {
    PendingOutcome pending;
    QFuture<HotKeyOutcome> future = pending.begin();
    pending.give(outcome);
    return future;
}

} // namespace tarnvale
