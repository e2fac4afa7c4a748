#pragma once

#include "discovery/linux/LinuxMachine.h"

#include <chrono>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace tarnvale {

/// A process as `FakeProc` lays it out.
struct FakeProcess {
    Pid pid = 0;
    Pid ppid = 1;
    std::string comm = "server";
    char state = 'S';
    std::int64_t threads = 1;
    std::uint64_t minorFaults = 100;
    std::uint64_t userTime = 0;
    std::uint64_t systemTime = 0;
    std::uint64_t startTime = 5000; ///< ticks since boot
    std::uint64_t virtualSize = 4u << 20;
    std::int64_t residentPages = 256;
    std::vector<std::string> words{"server"};
    std::string cgroup = "0::/\n"; ///< the whole file
    std::string cwd;               ///< no link without one
    std::string executable;        ///< no link without one
    std::map<int, std::uint64_t> sockets;
    std::string schedule; ///< the whole of schedstat; no file without
};

/// The kernel's process file system and control groups as a tree in a temporary folder, with a clock that
/// only a test moves. It begins with process 1, a systemd without sockets.
///
/// As with the real one, a file that was open when its process went has nothing more to read, and a pid that
/// is given out again gets a folder with another inode.
class FakeProc {
public:
    FakeProc();
    FakeProc(const FakeProc &) = delete;
    FakeProc &operator=(const FakeProc &) = delete;
    ~FakeProc();

    [[nodiscard]] const std::string &folder() const { return m_folder; }
    [[nodiscard]] std::string procFolder() const { return m_folder + "/proc"; }
    [[nodiscard]] std::string cgroupMount() const { return m_folder + "/cgroup"; }

    /// What a `LinuxMachine` on this tree reads. Valid as long as this object lives.
    [[nodiscard]] LinuxSources sources();

    /// A process that was just made: its pid becomes the one that loadavg shows as the last.
    void add(const FakeProcess &process);
    /// The same process with other texts; its descriptors become those of `process`.
    void change(const FakeProcess &process);
    /// The process ends.
    void remove(Pid pid);

    void openSocket(Pid pid, int descriptor, std::uint64_t inode);
    void closeDescriptor(Pid pid, int descriptor);
    /// A thread beside the first, with the descriptors and texts of `process`.
    void addThread(Pid pid, Pid thread, const FakeProcess &process);

    /// Shows a socket in the table of its address family: "0100007F:1F90" or the longer form of IPv6.
    void listen(std::string_view address, std::uint64_t inode);
    /// Takes all rows of a socket away.
    void unlisten(std::uint64_t inode);
    /// There is no `net/tcp6`.
    void removeIPv6Table();

    /// Makes the control group at `path` ("/app.slice/web.service") with those members; its id.
    std::uint64_t addGroup(const std::string &path, const std::vector<Pid> &members);

    /// Writes a file below the temporary folder, with the folders above it.
    void write(const std::string &path, std::string_view content) const;

    std::chrono::nanoseconds uptime = std::chrono::seconds(1000);
    Instant clock{std::chrono::seconds(1'700'001'000)};
    std::vector<std::string> applicationFolders;
    ContainerMap containers;
    int dockerCalls = 0;

    /// Moves both clocks on.
    void pass(std::chrono::milliseconds time);

private:
    void layOut(const std::string &folder, const FakeProcess &process) const;
    void writeTables() const;

    std::string m_folder;
    int m_gone = 0;
    bool m_hasIPv6 = true;
    std::vector<std::pair<std::string, std::uint64_t>> m_listeners;
};

} // namespace tarnvale
