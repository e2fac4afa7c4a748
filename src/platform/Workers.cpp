#include "platform/Workers.h"

#include <QCoreApplication>
#include <QEvent>
#include <QObject>
#include <QThread>

#include <system_error>

namespace tarnvale {

namespace {

/// The way back to the main thread. What is handed over passes a lock of our own and Qt only wakes, since the
/// thread sanitizer sees nothing of the order that Qt's own locks make.
class Inbox : public QObject {
public:
    /// The one of the process, made on the main thread. Never destroyed: a thread may use it until the end.
    static Inbox &instance() {
        static auto *const inbox = new Inbox;
        return *inbox;
    }

    void add(std::move_only_function<void()> step) {
        const std::scoped_lock lock(m_mutex);
        m_steps.push_back(std::move(step));
        QCoreApplication::postEvent(this, new QEvent(QEvent::User));
    }

    bool event(QEvent *event) override {
        std::unique_lock lock(m_mutex); // the event was made under it as well
        if (event->type() != QEvent::User) {
            lock.unlock();
            return QObject::event(event);
        }
        auto step = std::move(m_steps.front());
        m_steps.pop_front();
        lock.unlock();
        step();
        return true;
    }

private:
    std::mutex m_mutex;
    std::deque<std::move_only_function<void()>> m_steps; ///< one for each event
};

void tellMainThread(std::move_only_function<void()> step) {
    if (step)
        Inbox::instance().add(std::move(step));
}

} // namespace

Workers::Workers(std::size_t mostThreads) : m_mostThreads(mostThreads) {
    const Inbox &inbox = Inbox::instance();
    Q_ASSERT(QThread::currentThread() == inbox.thread());
    Q_UNUSED(inbox)
}

Workers::~Workers() {
    std::deque<Job> dropped;
    {
        const std::scoped_lock lock(m_mutex);
        m_isOver = true;
        dropped.swap(m_waiting);
    }
    for (Job &job : dropped)
        tellMainThread(std::move(job.tell));
    dropped.clear();
    m_hasWork.notify_all();
    m_threads.clear();
}

bool Workers::isIdle() const {
    const std::scoped_lock lock(m_mutex);
    return m_unfinished == 0;
}

void Workers::waitForDone() const {
    std::unique_lock lock(m_mutex);
    m_isDone.wait(lock, [this] { return m_unfinished == 0; });
}

void Workers::add(Job job) {
    const std::scoped_lock lock(m_mutex);
    if (m_isOver) { // given by work that is the last
        tellMainThread(std::move(job.tell));
        return;
    }
    m_waiting.push_back(std::move(job));
    ++m_unfinished;
    if (m_unfinished > m_threads.size() && m_threads.size() < m_mostThreads)
        startThread();
    m_hasWork.notify_one();
}

/// Without one more, the work waits for those that there are, or for the next try.
void Workers::startThread() {
    try {
        m_threads.emplace_back([this] { serve(); });
    } catch (const std::system_error &) {
    }
}

void Workers::serve() {
    std::unique_lock lock(m_mutex);
    for (;;) {
        m_hasWork.wait(lock, [this] { return m_isOver || !m_waiting.empty(); });
        if (m_isOver)
            return;
        Job job = std::move(m_waiting.front());
        m_waiting.pop_front();
        lock.unlock();
        job.work();
        job.work = {}; // what it held has gone when its end is told
        tellMainThread(std::move(job.tell));
        lock.lock();
        if (--m_unfinished == 0)
            m_isDone.notify_all();
    }
}

} // namespace tarnvale
