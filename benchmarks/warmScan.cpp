/// Scans again and again with one machine, a command between the scans, and prints in microseconds: the first
/// scan, the median of the scans while no process was started, the median of those right after the command
/// had run, and the median of the command.
///
///   benchmark-warm ROUNDS SCANS PATH [WORD...]
///
/// Each round runs the command once, then scans SCANS times.

#include "TimedCommand.h"
#include "discovery/linux/LinuxMachine.h"
#include "discovery/scanListeningPorts.h"
#include "discovery/text.h"

#include <cstdio>
#include <cstdlib>

namespace tarnvale {
namespace {

using Times = std::vector<std::chrono::nanoseconds>;

std::chrono::nanoseconds timeOfScan(LinuxMachine &machine) {
    const auto start = std::chrono::steady_clock::now();
    static_cast<void>(scanListeningPorts(machine));
    return std::chrono::steady_clock::now() - start;
}

int scanRepeatedly(int rounds, int scans, TimedCommand command) {
    LinuxMachine machine;
    const auto first = timeOfScan(machine);
    Times quiet;
    Times afterStart;
    Times commands;
    for (int round = 0; round < rounds; ++round) {
        const auto run = command.run();
        if (!run) {
            std::fprintf(stderr, "benchmark-warm: %s failed\n", command.path());
            return EXIT_FAILURE;
        }
        commands.push_back(run->wall);
        afterStart.push_back(timeOfScan(machine));
        for (int scan = 1; scan < scans; ++scan)
            quiet.push_back(timeOfScan(machine));
    }
    std::printf("%lld %lld %lld %lld\n", inMicroseconds(first), inMicroseconds(median(quiet)),
                inMicroseconds(median(afterStart)), inMicroseconds(median(commands)));
    return EXIT_SUCCESS;
}

int runWith(const std::vector<std::string> &words) {
    const int rounds = words.size() < 3 ? 0 : parseInteger<int>(words[0]).value_or(0);
    const int scans = words.size() < 3 ? 0 : parseInteger<int>(words[1]).value_or(0);
    if (rounds < 1 || scans < 2) {
        std::fputs("usage: benchmark-warm ROUNDS SCANS PATH [WORD...]\n", stderr);
        return EXIT_FAILURE;
    }
    return scanRepeatedly(rounds, scans, TimedCommand({words.begin() + 2, words.end()}));
}

} // namespace
} // namespace tarnvale

int main(int argc, char **argv) {
    return tarnvale::runWith({argv + 1, argv + argc});
}
