#pragma once

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <system_error>
#include <thread>

namespace tarnvale {

/// Calls `work(begin, end, worker)` for parts that make up 0 to `count`, and returns when all is done. Above
/// `worthTwo` the parts are shared out among two threads, workers 0 and 1: the kernel's answers about
/// processes come twice as fast from two processors, and a tool that looks around shouldn't take more.
template<typename Work> void inParts(std::size_t count, std::size_t worthTwo, const Work &work) {
    constexpr std::size_t part = 16;
    std::atomic<std::size_t> next = 0;
    const auto run = [&](std::size_t worker) {
        for (std::size_t begin = next.fetch_add(part); begin < count; begin = next.fetch_add(part))
            work(begin, std::min(begin + part, count), worker);
    };
    std::jthread other;
    try {
        if (count > worthTwo)
            other = std::jthread(run, std::size_t{1});
    } catch (const std::system_error &) {
        // No more threads are allowed; this one does all the work.
    }
    run(0);
}

} // namespace tarnvale
