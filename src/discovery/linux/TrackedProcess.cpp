#include "discovery/linux/TrackedProcess.h"

#include "discovery/linux/cgroups.h"
#include "discovery/linux/commandLine.h"
#include "discovery/text.h"

#include <algorithm>
#include <array>
#include <fcntl.h>
#include <sys/stat.h>

namespace tarnvale {

namespace {

using std::chrono::nanoseconds;

constexpr std::size_t argumentLimit = 256u << 10;
constexpr std::size_t smallFileLimit = 64u << 10;

/// Every text is read again after this many scans, each process in a scan of its own. What proves that it
/// hasn't run is trusted longer: then only others can have moved it or taken its memory.
constexpr std::uint64_t scansBetweenReadings = 8;
constexpr std::uint64_t scansOfRest = 64;

std::int64_t ticksPerSecond() {
    static const std::int64_t ticks = std::max(1L, sysconf(_SC_CLK_TCK));
    return ticks;
}

nanoseconds fromTicks(std::uint64_t ticks) {
    const auto perSecond = static_cast<std::uint64_t>(ticksPerSecond());
    return std::chrono::seconds(ticks / perSecond) +
           nanoseconds(ticks % perSecond * (1'000'000'000 / perSecond));
}

double percent(nanoseconds used, nanoseconds passed) {
    return passed <= nanoseconds::zero()
               ? 0
               : 100.0 * static_cast<double>(used.count()) / static_cast<double>(passed.count());
}

/// No counter moved: as far as `stat` can tell, the process has not run in between.
bool hasRested(const ProcStat &before, const ProcStat &after) {
    return before.processorTime() == after.processorTime() && before.minorFaults == after.minorFaults &&
           before.virtualSize == after.virtualSize && before.residentPages == after.residentPages &&
           before.comm == after.comm;
}

} // namespace

bool TrackedProcess::refresh(std::uint64_t scan, nanoseconds uptime, bool mayKeepOpen) {
    const auto isTurn = [&](std::uint64_t scans) {
        return (scan + static_cast<std::uint64_t>(m_pid)) % scans == 0;
    };
    std::string schedule = readSchedule(mayKeepOpen);
    const bool isAsleep = m_stat.threads == 1 && m_stat.state != 'R';
    m_mayHaveRun = !isAsleep || schedule.empty() || schedule != m_schedule || isTurn(scansOfRest);
    if (!m_mayHaveRun) {
        m_readAt = uptime;
        measure(false);
        return true;
    }
    const ProcStat before = m_stat;
    const bool wasRead = m_readAt != nanoseconds::zero();
    m_schedule = std::move(schedule); // before `stat`: what happens in between is seen the next time
    if (!readStat(mayKeepOpen && !m_scheduleFile.isOpen()))
        return false;
    m_readAt = uptime;
    const bool isNew = !wasRead || before.startTime != m_stat.startTime;
    const bool isDue = isTurn(scansBetweenReadings);
    const bool hasRun = isNew || !hasRested(before, m_stat);
    if (hasRun)
        m_memoryKB.reset();
    if (hasRun || isDue)
        forgetTexts();
    findLivingThread();
    measure(isNew);
    return true;
}

/// How long its thread has run and how often it was given a processor (Linux,
/// Documentation/scheduler/sched-stats.rst). Empty when there is more than one thread, the file may not be
/// kept open, which is what makes it cheap, or the kernel doesn't count.
std::string TrackedProcess::readSchedule(bool mayKeepOpen) {
    if (m_stat.threads != 1 || !mayKeepOpen)
        m_scheduleFile.reset();
    else if (!m_scheduleFile.isOpen())
        m_scheduleFile = FileDescriptor(
            openat(m_procFolder, ProcPath(m_pid, "schedstat").get(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (!m_scheduleFile.isOpen())
        return {};
    m_statFile.reset();
    std::array<char, 128> content;
    const ssize_t length = pread(m_scheduleFile.get(), content.data(), content.size(), 0);
    if (length <= 0)
        m_scheduleFile.reset();
    return {content.data(), static_cast<std::size_t>(std::max<ssize_t>(length, 0))};
}

bool TrackedProcess::readStat(bool mayKeepOpen) {
    std::array<char, 1024> content;
    ssize_t length = -1;
    if (m_statFile.isOpen())
        length = pread(m_statFile.get(), content.data(), content.size(), 0);
    if (length <= 0) {
        m_statFile = FileDescriptor(
            openat(m_procFolder, ProcPath(m_pid, "stat").get(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
        length = pread(m_statFile.get(), content.data(), content.size(), 0);
    }
    if (!mayKeepOpen)
        m_statFile.reset();
    if (length <= 0)
        return false;
    auto stat = parseProcStat({content.data(), static_cast<std::size_t>(length)});
    if (stat)
        m_stat = std::move(*stat);
    return stat.has_value();
}

void TrackedProcess::findLivingThread() {
    const auto thread =
        m_stat.isZombie() && m_stat.threads > 1 ? livingThread(m_procFolder, m_pid) : std::nullopt;
    m_livingThread = thread.value_or(0);
}

void TrackedProcess::forgetTexts() {
    m_command.reset();
    m_args.reset();
    m_cwd.reset();
    m_executable.reset();
    m_cgroup.reset();
}

void TrackedProcess::measure(bool isNew) {
    // Over a shorter time the clock ticks of the kernel's count are all that would be seen.
    constexpr nanoseconds shortestSample = std::chrono::milliseconds(200);
    const std::uint64_t ticks = m_stat.processorTime();
    if (isNew)
        m_cpu = percent(fromTicks(ticks), age());
    else if (m_readAt - m_sampledAt >= shortestSample)
        m_cpu = percent(fromTicks(ticks - std::min(ticks, m_sampledTicks)), m_readAt - m_sampledAt);
    else
        return;
    m_sampledAt = m_readAt;
    m_sampledTicks = ticks;
}

nanoseconds TrackedProcess::age() const {
    return std::max(nanoseconds::zero(), m_readAt - fromTicks(m_stat.startTime));
}

std::chrono::milliseconds TrackedProcess::start() const {
    return std::chrono::floor<std::chrono::milliseconds>(fromTicks(m_stat.startTime));
}

void TrackedProcess::readTexts() {
    command();
    args();
    cwd();
    memoryKB();
}

const std::string &TrackedProcess::command() {
    if (m_command)
        return *m_command;
    const std::string &comm = m_stat.comm;
    if (!isCutName(comm) && !isThreadName(comm))
        return m_command.emplace(repairedUtf8(comm));
    const auto line = words();
    return m_command.emplace(
        wholeCommand(comm, executable(), line.empty() ? std::string_view() : line.front()));
}

std::vector<std::string_view> TrackedProcess::words() {
    readFileAt(m_procFolder, path("cmdline").get(), m_words, smallFileLimit);
    return commandLineWords(m_words);
}

const std::string &TrackedProcess::args() {
    if (m_args)
        return *m_args;
    std::string content;
    readFileAt(m_procFolder, path("cmdline").get(), content, argumentLimit);
    std::string text = joinedCommandLine(content);
    return m_args.emplace(text.empty() ? "[" + repairedUtf8(m_stat.comm) + "]" : std::move(text));
}

const std::optional<std::string> &TrackedProcess::cwd() {
    if (!m_cwd) {
        auto folder = readLinkAt(m_procFolder, path("cwd").get());
        m_cwd.emplace(folder ? std::optional(repairedUtf8(*folder)) : std::nullopt);
    }
    return *m_cwd;
}

const std::string &TrackedProcess::executable() {
    if (!m_executable)
        m_executable = readLinkAt(m_procFolder, path("exe").get()).value_or(std::string());
    return *m_executable;
}

const std::string &TrackedProcess::cgroup() {
    if (!m_cgroup) {
        std::string content;
        readFileAt(m_procFolder, path("cgroup").get(), content, smallFileLimit);
        m_cgroup = parseCgroupFile(content);
    }
    return *m_cgroup;
}

bool TrackedProcess::isForeign() const {
    struct stat folder {};
    if (fstatat(m_procFolder, ProcPath(m_pid, "").get(), &folder, 0) != 0 || folder.st_uid != geteuid())
        return true;
    // A process that hides its namespaces from its own user is still that user's.
    const auto own = readLinkAt(AT_FDCWD, "/proc/self/ns/mnt");
    const auto namespaceLink = readLinkAt(m_procFolder, path("ns/mnt").get());
    return own && namespaceLink && *own != *namespaceLink;
}

std::int64_t TrackedProcess::memoryKB() {
    if (!m_memoryKB) {
        static const std::int64_t pageKB = sysconf(_SC_PAGESIZE) / 1024;
        std::string content;
        readFileAt(m_procFolder, path("statm").get(), content, smallFileLimit);
        const auto fields = tarnvale::words(content, 2); // proc(5): total, then resident pages
        const auto pages = fields.size() < 2 ? std::nullopt : parseInteger<std::int64_t>(fields[1]);
        m_memoryKB = pages.value_or(m_stat.residentPages) * pageKB;
    }
    return *m_memoryKB;
}

} // namespace tarnvale
