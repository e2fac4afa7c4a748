#include "platform/background.h"

namespace tarnvale {

Workers &backgroundThreads() {
    // Never destroyed: they would wait for their work, and a tool may take half a minute.
    constexpr std::size_t mostAtOnce = 32;
    static auto *const threads = new Workers(mostAtOnce);
    return *threads;
}

} // namespace tarnvale
