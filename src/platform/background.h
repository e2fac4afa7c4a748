#pragma once

#include "platform/Workers.h"

#include <utility>

namespace tarnvale {

/// Threads for work that waits for other programs or for slow files. What still waits when the program ends
/// is given up. The first call comes from the main thread.
[[nodiscard]] Workers &backgroundThreads();

/// Does `work` on one of them; see `Workers::run`.
template<typename Work> [[nodiscard]] auto inBackground(Work work) {
    return backgroundThreads().run(std::move(work));
}

} // namespace tarnvale
