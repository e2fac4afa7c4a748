#pragma once

#include "discovery/FileDescriptor.h"
#include "discovery/linux/ProcStat.h"
#include "discovery/linux/procFiles.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarnvale {

/// One process that the scan follows, known by its pid and start time.
///
/// `refresh` reads its `stat` anew, unless a far cheaper look at `schedstat` proves that its only thread has
/// not run since: a process that hasn't run has changed nothing of its own. The longer texts are read when
/// they are first asked for and kept as long as `stat` shows no trace of the process having run; a process of
/// several threads can change its folder and none of the counters, so each text is read again after a few
/// scans in any case.
class TrackedProcess {
public:
    /// `procFolder` stays open as long as this object lives.
    TrackedProcess(int procFolder, Pid pid) : m_procFolder(procFolder), m_pid(pid) {}

    /// Brings `stat` up to date at `uptime`, the time since boot; false when the process has gone.
    /// `mayKeepOpen`: one file may stay open for the next time.
    bool refresh(std::uint64_t scan, std::chrono::nanoseconds uptime, bool mayKeepOpen);

    [[nodiscard]] Pid pid() const { return m_pid; }
    [[nodiscard]] const ProcStat &stat() const { return m_stat; }
    /// It is a zombie: nothing of it is left but its exit status.
    [[nodiscard]] bool hasEnded() const { return m_stat.isZombie() && m_stat.threads <= 1; }
    [[nodiscard]] bool isHeldOpen() const { return m_statFile.isOpen() || m_scheduleFile.isOpen(); }

    /// False when the last `refresh` found that it has not run since the one before.
    [[nodiscard]] bool mayHaveRun() const { return m_mayHaveRun; }

    /// Reads what every listed process is asked for: its name, command line, folder and size.
    void readTexts();

    /// The process's short name, made whole where the kernel cut it.
    const std::string &command();

    /// The command line in one text, at most 256 KiB of it; "[comm]" when it is empty.
    const std::string &args();

    /// The words of the command line, at most 64 KiB of it, as bytes. Read anew at each call.
    [[nodiscard]] std::vector<std::string_view> words();

    /// The working directory; nothing when it can't be read.
    const std::optional<std::string> &cwd();

    /// The executable's path; empty when it can't be read.
    [[nodiscard]] const std::string &executable();

    /// The path of its control group; empty when it can't be read.
    [[nodiscard]] const std::string &cgroup();

    /// Resident size in kilobytes.
    std::int64_t memoryKB();

    /// It runs as another user, or in a mount namespace of its own. Read anew at each call.
    [[nodiscard]] bool isForeign() const;

    /// Percent of one processor between the last two readings; since its start at the first.
    [[nodiscard]] double cpu() const { return m_cpu; }

    /// How long it has run.
    [[nodiscard]] std::chrono::nanoseconds age() const;

    /// Its start, as the time since boot.
    [[nodiscard]] std::chrono::milliseconds start() const;

private:
    [[nodiscard]] std::string readSchedule(bool mayKeepOpen);
    bool readStat(bool mayKeepOpen);
    void forgetTexts();
    void findLivingThread();
    [[nodiscard]] ProcPath path(std::string_view name) const { return {m_pid, name, m_livingThread}; }
    void measure(bool isNew);

    int m_procFolder;
    Pid m_pid;
    Pid m_livingThread = 0; ///< stands in for a first thread that has ended; 0 while it lives
    FileDescriptor m_statFile;
    FileDescriptor m_scheduleFile; ///< open instead of the other
    ProcStat m_stat;
    std::string m_schedule; ///< as it was just before `m_stat`; empty when it proves nothing
    bool m_mayHaveRun = true;
    std::chrono::nanoseconds m_readAt{};
    std::chrono::nanoseconds m_sampledAt{};
    std::uint64_t m_sampledTicks = 0;
    double m_cpu = 0;
    std::optional<std::string> m_command;
    std::string m_words; ///< what `words` points into
    std::optional<std::string> m_args;
    std::optional<std::optional<std::string>> m_cwd;
    std::optional<std::string> m_executable;
    std::optional<std::string> m_cgroup;
    std::optional<std::int64_t> m_memoryKB;
};

} // namespace tarnvale
