#pragma once

#include <QFuture>
#include <QThreadPool>
#include <QtConcurrent>

#include <utility>

namespace tarnvale {

/// Threads for work that waits for other programs or for slow files. What still waits when the program ends
/// is given up.
[[nodiscard]] QThreadPool &backgroundThreads();

/// Runs `work` on one of them.
template<typename Work> [[nodiscard]] auto inBackground(Work work) {
    return QtConcurrent::run(&backgroundThreads(), std::move(work));
}

} // namespace tarnvale
