#pragma once

#include <QFuture>
#include <QPromise>

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <type_traits>
#include <utility>
#include <vector>

namespace tarnvale {

/// Threads that do work one piece after another, in the order in which it was given to them.
///
/// They are made when there is something to do, up to a number, and kept. What a thread has found out goes
/// back to the main thread and finishes its future there, from the event loop: a future is never finished
/// when `run` gives it away, and must be awaited, not blocked on. Nothing else is shared, and no work throws.
class Workers {
public:
    /// On the main thread.
    explicit Workers(std::size_t mostThreads);
    Workers(const Workers &) = delete;
    Workers &operator=(const Workers &) = delete;
    /// Waits for the work that is under way. What still waits is never done; its future finishes with an
    /// empty result, so that nobody awaits it for ever.
    ~Workers();

    /// What `work` returns. It waits its turn, also while the system allows no thread.
    template<typename Work, typename Result = std::invoke_result_t<Work &>>
        requires(!std::is_void_v<Result>)
    [[nodiscard]] QFuture<Result> run(Work work) {
        QPromise<Result> promise;
        promise.start();
        QFuture<Result> future = promise.future();
        const auto result = std::make_shared<Result>();
        add({.work = [work = std::move(work), result]() mutable { *result = work(); },
             .tell =
                 [promise = std::move(promise), result]() mutable {
                     promise.addResult(std::move(*result));
                     promise.finish();
                 }});
        return future;
    }

    /// Does `work`, whose end nobody awaits.
    template<typename Work>
        requires std::is_void_v<std::invoke_result_t<Work &>>
    void run(Work work) {
        add({.work = std::move(work), .tell = {}});
    }

    /// Nothing is under way or waits. What was found out may still be on its way to the main thread.
    [[nodiscard]] bool isIdle() const;
    /// Blocks until it is so.
    void waitForDone() const;

private:
    struct Job {
        std::move_only_function<void()> work; ///< on one of the threads
        std::move_only_function<void()> tell; ///< then on the main thread; may be absent
    };

    void add(Job job);
    void startThread();
    void serve();

    const std::size_t m_mostThreads;
    mutable std::mutex m_mutex; ///< for all below
    std::condition_variable m_hasWork;
    mutable std::condition_variable m_isDone;
    std::deque<Job> m_waiting;
    std::size_t m_unfinished = 0; ///< those that wait, and those under way
    bool m_isOver = false;
    std::vector<std::jthread> m_threads;
};

} // namespace tarnvale
