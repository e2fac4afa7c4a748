#include "platform/background.h"

namespace tarnvale {

QThreadPool &backgroundThreads() {
    // Never destroyed: a pool waits for its work when it goes, and a tool may take half a minute.
    static QThreadPool *const pool = [] {
        constexpr int mostAtOnce = 32;
        auto *threads = new QThreadPool;
        threads->setMaxThreadCount(mostAtOnce);
        return threads;
    }();
    return *pool;
}

} // namespace tarnvale
