#include "discovery/linux/ForkedChild.h"

#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstring>
#include <grp.h>
#include <net/if.h>
#include <sched.h>
#include <stdexcept>
#include <sys/ioctl.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tarnvale {

namespace {

void writeAll(int fd, const void *data, std::size_t size) {
    const auto *at = static_cast<const char *>(data);
    while (size > 0) {
        const ssize_t count = write(fd, at, size);
        if (count <= 0)
            _exit(3);
        at += count;
        size -= static_cast<std::size_t>(count);
    }
}

bool readAll(int fd, void *data, std::size_t size) {
    auto *at = static_cast<char *>(data);
    while (size > 0) {
        const ssize_t count = read(fd, at, size);
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return false;
        at += count;
        size -= static_cast<std::size_t>(count);
    }
    return true;
}

[[noreturn]] void runChild(int output, const std::function<std::string()> &body) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    std::string text;
    try {
        text = body();
    } catch (const std::exception &error) {
        text = std::string("threw: ") + error.what();
    }
    const std::uint32_t size = static_cast<std::uint32_t>(text.size());
    writeAll(output, &size, sizeof size);
    writeAll(output, text.data(), text.size());
    close(output);
    for (;;)
        pause();
}

std::string because(const char *what) {
    return std::string("skip: ") + what + ": " + strerror(errno);
}

std::string raiseLoopback() {
    const FileDescriptor socket(::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0));
    ifreq request{};
    std::strcpy(request.ifr_name, "lo");
    request.ifr_flags = IFF_UP;
    return ioctl(socket.get(), SIOCSIFFLAGS, &request) == 0 ? "" : because("no loopback");
}

} // namespace

ForkedChild::ForkedChild(const std::function<std::string()> &body) {
    int ends[2];
    if (pipe(ends) != 0)
        throw std::runtime_error("no pipe");
    FileDescriptor input(ends[0]);
    FileDescriptor output(ends[1]);
    m_pid = fork();
    if (m_pid == 0) {
        input.reset();
        runChild(output.get(), body);
    }
    output.reset();
    std::uint32_t size = 0;
    if (m_pid < 0 || !readAll(input.get(), &size, sizeof size))
        return;
    std::string text(size, '\0');
    if (readAll(input.get(), text.data(), size))
        m_said = std::move(text);
}

ForkedChild::~ForkedChild() {
    kill();
}

void ForkedChild::kill() {
    if (m_pid <= 0)
        return;
    ::kill(m_pid, SIGKILL);
    while (waitpid(m_pid, nullptr, 0) < 0 && errno == EINTR)
        ;
    m_pid = -1;
}

std::optional<std::string> inForkedChild(const std::function<std::string()> &body) {
    return ForkedChild(body).said();
}

std::optional<std::string> inOwnNamespaces(const std::function<std::string()> &body) {
    return inForkedChild([&]() -> std::string {
        if (unshare(CLONE_NEWPID | CLONE_NEWNS | CLONE_NEWNET) != 0)
            return because("no namespaces of our own");
        // The pid namespace begins with the next child.
        return inForkedChild([&]() -> std::string {
                   if (mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
                       mount("proc", "/proc", "proc", MS_NOSUID | MS_NODEV | MS_NOEXEC, nullptr) != 0)
                       return because("no process file system");
                   if (std::string reason = raiseLoopback(); !reason.empty())
                       return reason;
                   return body();
               })
            .value_or("the first process died");
    });
}

bool becomeAnotherUser() {
    constexpr uid_t nobody = 65534;
    if (setgroups(0, nullptr) != 0 || setresgid(nobody, nobody, nobody) != 0 ||
        setresuid(nobody, nobody, nobody) != 0)
        return false;
    // As a process that this user started: without it, its own files would stay root's.
    return prctl(PR_SET_DUMPABLE, 1) == 0;
}

} // namespace tarnvale
