/// Runs two commands in turn and prints the median wall time of each in microseconds, then the peak memory of
/// each in kilobytes.
///
///   benchmark-compare RUNS PATH [WORD...] -- PATH [WORD...]
///
/// A program of its own because the kernel counts the memory of whoever starts a process, up to its exec, to
/// that process's peak: only a small one sees how little the other needs.

#include "TimedCommand.h"
#include "discovery/text.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace tarnvale {
namespace {

struct Contestant {
    TimedCommand command;
    std::vector<std::chrono::nanoseconds> walls;
    long peakKB = 0;
};

/// Whether the command could be run. The first run of all only fills the caches.
bool runOnce(Contestant &contestant, bool isWarmUp) {
    const auto run = contestant.command.run();
    if (!run)
        return false;
    if (!isWarmUp)
        contestant.walls.push_back(run->wall);
    contestant.peakKB = std::max(contestant.peakKB, run->peakKB);
    return true;
}

int compare(std::array<Contestant, 2> contestants, int runs) {
    for (int round = 0; round <= runs; ++round)
        for (Contestant &contestant : contestants)
            if (!runOnce(contestant, round == 0)) {
                std::fprintf(stderr, "benchmark-compare: %s failed\n", contestant.command.path());
                return EXIT_FAILURE;
            }
    const auto &[first, second] = contestants;
    std::printf("%lld %lld %ld %ld\n", inMicroseconds(median(first.walls)),
                inMicroseconds(median(second.walls)), first.peakKB, second.peakKB);
    return EXIT_SUCCESS;
}

int runWith(const std::vector<std::string> &words) {
    const int runs = words.empty() ? 0 : parseInteger<int>(words.front()).value_or(0);
    const auto separator = std::find(words.begin(), words.end(), "--");
    if (runs < 1 || separator - words.begin() < 2 || words.end() - separator < 2) {
        std::fputs("usage: benchmark-compare RUNS PATH [WORD...] -- PATH [WORD...]\n", stderr);
        return EXIT_FAILURE;
    }
    return compare({Contestant{.command = TimedCommand({words.begin() + 1, separator})},
                    Contestant{.command = TimedCommand({separator + 1, words.end()})}},
                   runs);
}

} // namespace
} // namespace tarnvale

int main(int argc, char **argv) {
    return tarnvale::runWith({argv + 1, argv + argc});
}
