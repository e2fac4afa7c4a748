/// What the store adds to a scan, and what it costs when nobody looks.
///
///   benchmark-store cycle ROUNDS     microseconds: a warm scan of the machine, a whole cycle of the store on
///   it,
///                                    and how often an observer was told in the cycles
///   benchmark-store apply ROUNDS     microseconds of the main thread for a scan of 2,000 ports of which 1 %
///   differ benchmark-store churn CYCLES     kilobytes of resident memory, ten times on the way through the
///   cycles benchmark-store idle SECONDS     microseconds of processor time and of wall time, with nobody
///   looking

#include "ListMachine.h"
#include "NoPlatform.h"
#include "TimedCommand.h"
#include "discovery/linux/LinuxMachine.h"
#include "discovery/scanListeningPorts.h"
#include "discovery/text.h"
#include "store/PortStore.h"

#include <QCoreApplication>
#include <QCoroTask>
#include <QTimer>

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <memory>

namespace tarnvale {
namespace {

using std::chrono::nanoseconds;

nanoseconds readClock(clockid_t id) {
    timespec time{};
    clock_gettime(id, &time);
    return std::chrono::seconds(time.tv_sec) + nanoseconds(time.tv_nsec);
}

template<typename Work> nanoseconds timeOf(clockid_t id, const Work &work) {
    const nanoseconds start = readClock(id);
    work();
    return readClock(id) - start;
}

void finish(QCoro::Task<> flow) {
    while (!flow.isReady())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

/// Counts what observers are told.
int countChanges(PortStore &store, const std::function<void()> &work) {
    int count = 0;
    QObject context;
    const auto note = [&count] { ++count; };
    for (const auto signal :
         {&PortStore::portsChanged, &PortStore::cpuHistoryChanged, &PortStore::eventsChanged,
          &PortStore::healthChanged, &PortStore::responseTimesChanged, &PortStore::errorChanged,
          &PortStore::downWatchedPortsChanged})
        QObject::connect(&store, signal, &context, note);
    work();
    return count;
}

int measureCycle(int rounds) {
    LinuxMachine machine;
    NoPlatform world(machine, NoPlatform::Time::standsStill);
    PortStore store(world.platform());
    for (int i = 0; i < 50; ++i) // until the histories of usage are full
        finish(store.refresh());
    std::vector<nanoseconds> scans;
    std::vector<nanoseconds> cycles;
    const int told = countChanges(store, [&] {
        for (int i = 0; i < rounds; ++i) {
            scans.push_back(timeOf(CLOCK_MONOTONIC, [&] { static_cast<void>(scanListeningPorts(machine)); }));
            cycles.push_back(timeOf(CLOCK_MONOTONIC, [&] { finish(store.refresh()); }));
        }
    });
    std::printf("%lld %lld %d\n", inMicroseconds(median(scans)), inMicroseconds(median(cycles)), told);
    return EXIT_SUCCESS;
}

int measureApply(int rounds) {
    constexpr int ports = 2000;
    ListMachine machine(ports);
    NoPlatform world(machine, NoPlatform::Time::standsStill);
    PortStore store(world.platform());
    finish(store.refresh());
    std::vector<nanoseconds> times;
    for (int i = 0; i < rounds; ++i) {
        machine.replace(ports / 100);
        times.push_back(timeOf(CLOCK_THREAD_CPUTIME_ID, [&] { finish(store.refresh()); }));
    }
    std::printf("%lld\n", inMicroseconds(median(times)));
    return EXIT_SUCCESS;
}

long residentKilobytes() {
    std::ifstream statm("/proc/self/statm");
    long total = 0;
    long resident = 0;
    statm >> total >> resident;
    return resident * (sysconf(_SC_PAGESIZE) / 1024);
}

int measureChurn(int cycles) {
    ListMachine machine(200);
    NoPlatform world(machine, NoPlatform::Time::standsStill);
    PortStore store(world.platform());
    for (int i = 1; i <= cycles; ++i) {
        machine.replace(20);
        finish(store.refresh());
        if (i % (cycles / 10) == 0)
            std::printf("%ld ", residentKilobytes());
    }
    std::printf("\n");
    return EXIT_SUCCESS;
}

int measureIdle(int seconds) {
    LinuxMachine machine;
    NoPlatform world(machine, NoPlatform::Time::passes);
    PortStore store(world.platform());
    finish(store.refresh());
    const nanoseconds start = readClock(CLOCK_MONOTONIC);
    const nanoseconds used = timeOf(CLOCK_PROCESS_CPUTIME_ID, [&] {
        QTimer::singleShot(std::chrono::seconds(seconds), [] { QCoreApplication::quit(); });
        QCoreApplication::exec();
    });
    std::printf("%lld %lld\n", inMicroseconds(used), inMicroseconds(readClock(CLOCK_MONOTONIC) - start));
    return EXIT_SUCCESS;
}

int runWith(const std::vector<std::string> &words) {
    const std::string what = words.size() == 2 ? words[0] : "";
    const int count = words.size() == 2 ? parseInteger<int>(words[1]).value_or(0) : 0;
    if (what == "cycle" && count > 0)
        return measureCycle(count);
    if (what == "apply" && count > 0)
        return measureApply(count);
    if (what == "churn" && count >= 10)
        return measureChurn(count);
    if (what == "idle" && count > 0)
        return measureIdle(count);
    std::fputs("usage: benchmark-store cycle|apply|churn|idle COUNT\n", stderr);
    return EXIT_FAILURE;
}

} // namespace
} // namespace tarnvale

int main(int argc, char **argv) {
    const QCoreApplication application(argc, argv);
    return tarnvale::runWith({argv + 1, argv + argc});
}
