/// Puts a load on this machine and keeps it there until standard input closes.
///
///   benchmark-load PROCESSES LISTENERS OWNERS DESCRIPTORS
///
/// The numbers are what the machine shall have in all, so what it runs already counts; OWNERS is how many new
/// processes share the new listeners. Prints what was reached: "PROCESSES LISTENERS DESCRIPTORS". The new
/// processes end with this one, however it ends.

#include "discovery/linux/SocketDiag.h"
#include "discovery/linux/procFiles.h"
#include "discovery/text.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <netinet/in.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>

namespace tarnvale {
namespace {

struct Count {
    std::int64_t processes = 0;
    std::int64_t listeners = 0;
    std::int64_t descriptors = 0;
};

struct Goal {
    Count total;
    std::int64_t owners = 0;
};

std::optional<Count> countMachine() {
    const FileDescriptor procFolder = openFolderAt(AT_FDCWD, "/proc");
    const auto listeners = SocketDiag().listeners();
    if (!procFolder.isOpen() || !listeners)
        return std::nullopt;
    Count count{.listeners = static_cast<std::int64_t>(listeners->size())};
    for (const ProcessEntry &process : listProcesses(procFolder.get())) {
        ++count.processes;
        const FileDescriptor folder = openFolderAt(procFolder.get(), ProcPath(process.pid, "fd").get());
        forEachEntry(folder.get(), [&](const char *name, ino_t) { count.descriptors += *name != '.'; });
    }
    return count;
}

/// The part of `total` that falls to number `index` of `count`, so that all parts make up the total.
std::int64_t share(std::int64_t total, std::int64_t index, std::int64_t count) {
    return total * (index + 1) / count - total * index / count;
}

/// Listens on a port of the kernel's choice.
bool listenOnLoopback(bool isIPv6) {
    const sockaddr_in four{.sin_family = AF_INET, .sin_addr = {.s_addr = htonl(INADDR_LOOPBACK)}};
    const sockaddr_in6 six{.sin6_family = AF_INET6, .sin6_addr = IN6ADDR_LOOPBACK_INIT};
    const int fd = socket(isIPv6 ? AF_INET6 : AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const auto *address =
        isIPv6 ? reinterpret_cast<const sockaddr *>(&six) : reinterpret_cast<const sockaddr *>(&four);
    return fd >= 0 && bind(fd, address, isIPv6 ? sizeof six : sizeof four) == 0 && listen(fd, 8) == 0;
}

/// Every tenth listens on ::1, where there is one.
bool openListeners(std::int64_t count) {
    for (std::int64_t opened = 0; opened < count; ++opened)
        if (!(opened % 10 == 9 && listenOnLoopback(true)) && !listenOnLoopback(false))
            return false;
    return true;
}

/// Files and pipes in turn.
bool openDescriptors(std::int64_t count) {
    while (count > 0) {
        std::array<int, 2> ends{};
        const bool opensPipe = count % 4 == 0;
        if (opensPipe ? pipe(ends.data()) != 0 : open("/dev/null", O_RDONLY) < 0)
            return false;
        count -= opensPipe ? 2 : 1;
    }
    return true;
}

/// The life of a new process: opens its share, reports with one byte, waits for its end.
[[noreturn]] void live(pid_t parent, int report, std::int64_t listeners, std::int64_t descriptors) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    const bool isComplete = getppid() == parent && openListeners(listeners) && openDescriptors(descriptors);
    const char answer = isComplete ? '+' : '-';
    static_cast<void>(write(report, &answer, 1));
    close(report);
    for (;;)
        pause();
}

class Load {
public:
    Load() = default;
    Load(const Load &) = delete;
    Load &operator=(const Load &) = delete;
    ~Load() {
        for (const pid_t pid : m_children)
            kill(pid, SIGKILL);
        for (const pid_t pid : m_children)
            waitpid(pid, nullptr, 0);
    }

    /// Whether everything that `goal` lacks could be added to what the machine has.
    bool reach(const Goal &goal, const Count &before) {
        const auto listeners = std::max<std::int64_t>(goal.total.listeners - before.listeners, 0);
        const auto owners = std::min(goal.owners, listeners);
        const auto processes =
            std::max(goal.total.processes - before.processes, std::max<std::int64_t>(owners, 1));
        // Each comes with the three standard descriptors.
        const auto descriptors = std::max<std::int64_t>(
            goal.total.descriptors - before.descriptors - listeners - 3 * processes, 0);
        std::array<int, 2> report{};
        if (pipe2(report.data(), O_CLOEXEC) != 0)
            return false;
        const FileDescriptor reading(report[0]);
        FileDescriptor writing(report[1]);
        std::int64_t owner = 0;
        for (std::int64_t index = 0; index < processes; ++index) {
            const bool isOwner = share(owners, index, processes) > 0;
            if (!add(reading.get(), writing.get(), isOwner ? share(listeners, owner, owners) : 0,
                     share(descriptors, index, processes)))
                return false;
            owner += isOwner;
        }
        writing.reset();
        return allReport(reading.get());
    }

private:
    bool add(int reading, int writing, std::int64_t listeners, std::int64_t descriptors) {
        const pid_t parent = getpid();
        const pid_t pid = fork();
        if (pid == 0) {
            close(reading);
            live(parent, writing, listeners, descriptors);
        }
        if (pid > 0)
            m_children.push_back(pid);
        return pid > 0;
    }

    [[nodiscard]] bool allReport(int reading) const {
        for (std::size_t reports = 0; reports < m_children.size(); ++reports) {
            char answer = '-';
            if (read(reading, &answer, 1) != 1 || answer != '+')
                return false;
        }
        return true;
    }

    std::vector<pid_t> m_children;
};

void waitForEndOfInput() {
    std::array<char, 64> ignored;
    ssize_t length = 0;
    do
        length = read(STDIN_FILENO, ignored.data(), ignored.size());
    while (length > 0 || (length < 0 && errno == EINTR));
}

int fail(const char *text) {
    std::fprintf(stderr, "benchmark-load: %s\n", text);
    return EXIT_FAILURE;
}

int keep(const Goal &goal) {
    // What the starter left open would count again in every new process.
    close_range(3, ~0u, 0);
    const auto before = countMachine();
    if (!before)
        return fail("this machine's sockets and processes can't be counted");
    Load load;
    if (!load.reach(goal, *before))
        return fail("a process, a port or a descriptor was refused; see 'ulimit -u' and 'ulimit -n'");
    const auto after = countMachine();
    if (!after)
        return fail("this machine's sockets and processes can't be counted");
    std::printf("%lld %lld %lld\n", static_cast<long long>(after->processes),
                static_cast<long long>(after->listeners), static_cast<long long>(after->descriptors));
    std::fflush(stdout);
    waitForEndOfInput();
    return EXIT_SUCCESS;
}

int runWith(const std::vector<std::string> &words) {
    std::vector<std::int64_t> numbers;
    for (const std::string &word : words)
        if (const auto number = parseInteger<std::int64_t>(word); number && *number >= 0)
            numbers.push_back(*number);
    if (numbers.size() != 4 || words.size() != 4)
        return fail("usage: benchmark-load PROCESSES LISTENERS OWNERS DESCRIPTORS");
    return keep({.total = {.processes = numbers[0], .listeners = numbers[1], .descriptors = numbers[3]},
                 .owners = numbers[2]});
}

} // namespace
} // namespace tarnvale

int main(int argc, char **argv) {
    return tarnvale::runWith({argv + 1, argv + argc});
}
