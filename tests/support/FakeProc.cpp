#include "support/FakeProc.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <sys/stat.h>
#include <unistd.h>

namespace tarnvale {

namespace {

namespace fs = std::filesystem;

// proc(5), "/proc/pid/stat": 52 fields.
std::string statOf(const FakeProcess &process) {
    const auto text = [](auto number) { return std::to_string(number); };
    return text(process.pid) + " (" + process.comm + ") " + process.state + " " + text(process.ppid) +
           " 42 42 0 -1 4194560 " + text(process.minorFaults) + " 0 0 0 " + text(process.userTime) + " " +
           text(process.systemTime) + " 0 0 20 0 " + text(process.threads) + " 0 " + text(process.startTime) +
           " " + text(process.virtualSize) + " " + text(process.residentPages) +
           " 18446744073709551615 1 1 0 0 0 0 0 4096 17642 0 0 0 17 1 0 0 0 0 0 0 0 0 0 0 0 0 0\n";
}

std::string commandLineOf(const FakeProcess &process) {
    std::string text;
    for (const std::string &word : process.words)
        text += word + '\0';
    return text;
}

void link(const std::string &target, const std::string &path) {
    fs::remove(path);
    if (!target.empty())
        fs::create_symlink(target, path);
}

std::string socketTarget(std::uint64_t inode) {
    return "socket:[" + std::to_string(inode) + "]";
}

std::string makeFolder() {
    std::string path = fs::temp_directory_path() / "tarnvale-proc-XXXXXX";
    // Tests also read it as another user.
    if (mkdtemp(path.data()) == nullptr || chmod(path.c_str(), 0755) != 0)
        throw std::runtime_error("no temporary folder");
    return path;
}

} // namespace

FakeProc::FakeProc() : m_folder(makeFolder()) {
    write("proc/loadavg", "0.00 0.00 0.00 1/60 1\n");
    write("cgroup/cgroup.procs", "");
    writeTables();
    add({.pid = 1,
         .ppid = 0,
         .comm = "systemd",
         .startTime = 1,
         .words = {"/sbin/init"},
         .cgroup = "0::/init.scope\n"});
}

FakeProc::~FakeProc() {
    std::error_code ignored;
    fs::remove_all(m_folder, ignored);
}

LinuxSources FakeProc::sources() {
    return {.procFolder = procFolder(),
            .usesNetlink = false,
            .cgroupMount = cgroupMount(),
            .applicationFolders = applicationFolders,
            .ownExecutable = "/opt/tarnvale/bin/tarnvale",
            .uptime = [this] { return uptime; },
            .wallClock = [this] { return clock; },
            .dockerPorts =
                [this] {
                    ++dockerCalls;
                    return containers;
                }};
}

void FakeProc::add(const FakeProcess &process) {
    const std::string pid = std::to_string(process.pid);
    if (fs::exists(procFolder() + "/" + pid))
        throw std::logic_error("pid " + pid + " is taken");
    layOut("proc/" + pid, process);
    write("proc/loadavg", "0.00 0.00 0.00 1/60 " + pid + "\n");
}

void FakeProc::change(const FakeProcess &process) {
    const std::string folder = "proc/" + std::to_string(process.pid);
    fs::remove_all(m_folder + "/" + folder + "/fd");
    layOut(folder, process);
}

void FakeProc::remove(Pid pid) {
    const std::string folder = "proc/" + std::to_string(pid);
    write(folder + "/stat", "");
    write(folder + "/schedstat", "");
    // Moved rather than removed, so that its inode isn't given out again.
    fs::rename(m_folder + "/" + folder, m_folder + "/gone" + std::to_string(++m_gone));
}

void FakeProc::openSocket(Pid pid, int descriptor, std::uint64_t inode) {
    link(socketTarget(inode), procFolder() + "/" + std::to_string(pid) + "/fd/" + std::to_string(descriptor));
}

void FakeProc::closeDescriptor(Pid pid, int descriptor) {
    fs::remove(procFolder() + "/" + std::to_string(pid) + "/fd/" + std::to_string(descriptor));
}

void FakeProc::addThread(Pid pid, Pid thread, const FakeProcess &process) {
    layOut("proc/" + std::to_string(pid) + "/task/" + std::to_string(thread), process);
}

void FakeProc::listen(std::string_view address, std::uint64_t inode) {
    m_listeners.emplace_back(address, inode);
    writeTables();
}

void FakeProc::unlisten(std::uint64_t inode) {
    std::erase_if(m_listeners, [&](const auto &row) { return row.second == inode; });
    writeTables();
}

void FakeProc::removeIPv6Table() {
    m_hasIPv6 = false;
    fs::remove(procFolder() + "/net/tcp6");
}

std::uint64_t FakeProc::addGroup(const std::string &path, const std::vector<Pid> &members) {
    std::string content;
    for (const Pid pid : members)
        content += std::to_string(pid) + "\n";
    write("cgroup" + path + "/cgroup.procs", content);
    struct stat status {};
    if (stat((cgroupMount() + path).c_str(), &status) != 0)
        throw std::runtime_error("no control group");
    return status.st_ino;
}

void FakeProc::write(const std::string &path, std::string_view content) const {
    const fs::path file = m_folder + "/" + path;
    fs::create_directories(file.parent_path());
    std::ofstream stream(file, std::ios::binary | std::ios::trunc);
    stream << content << std::flush;
    if (!stream)
        throw std::runtime_error("can't write " + file.string());
}

void FakeProc::pass(std::chrono::milliseconds time) {
    uptime += time;
    clock += time;
}

void FakeProc::layOut(const std::string &folder, const FakeProcess &process) const {
    write(folder + "/stat", statOf(process));
    write(folder + "/cmdline", commandLineOf(process));
    write(folder + "/cgroup", process.cgroup);
    write(folder + "/statm", "1024 " + std::to_string(process.residentPages) + " 64 1 0 128 0\n");
    if (!process.schedule.empty())
        write(folder + "/schedstat", process.schedule);
    const std::string path = m_folder + "/" + folder;
    link(process.cwd, path + "/cwd");
    link(process.executable, path + "/exe");
    fs::create_directories(path + "/fd");
    fs::create_directories(path + "/task/" + std::to_string(process.pid));
    for (const auto &[descriptor, inode] : process.sockets)
        link(socketTarget(inode), path + "/fd/" + std::to_string(descriptor));
}

void FakeProc::writeTables() const {
    constexpr std::size_t shortAddress = 13;
    std::string four = "  sl  local_address rem_address   st tx_queue rx_queue tr tm->when retrnsmt   uid  "
                       "timeout inode\n";
    std::string six = four;
    int number = 0;
    for (const auto &[address, inode] : m_listeners) {
        const bool isShort = address.size() == shortAddress;
        (isShort ? four : six) += "   " + std::to_string(number++) + ": " + address + " " +
                                  std::string(isShort ? 8 : 32, '0') +
                                  ":0000 0A 00000000:00000000 00:00000000 00000000  1000        0 " +
                                  std::to_string(inode) + " 1 0000000000000000 100 0 0 10 0\n";
    }
    write("proc/net/tcp", four);
    if (m_hasIPv6)
        write("proc/net/tcp6", six);
}

} // namespace tarnvale
