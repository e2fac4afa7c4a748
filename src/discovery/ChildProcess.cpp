#include "discovery/ChildProcess.h"

#include "discovery/processDescriptor.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <system_error>
#include <thread>

namespace tarnvale {

namespace {

using std::chrono::milliseconds;

/// The file actions and attributes of one start.
class SpawnPlan {
public:
    SpawnPlan() {
        posix_spawn_file_actions_init(&m_actions);
        posix_spawnattr_init(&m_attributes);
    }
    SpawnPlan(const SpawnPlan &) = delete;
    SpawnPlan &operator=(const SpawnPlan &) = delete;
    ~SpawnPlan() {
        posix_spawn_file_actions_destroy(&m_actions);
        posix_spawnattr_destroy(&m_attributes);
    }

    void wire(const ChildProcess::Setup &setup) {
        connectToNull(STDIN_FILENO, O_RDONLY);
        if (setup.output >= 0)
            posix_spawn_file_actions_adddup2(&m_actions, setup.output, STDOUT_FILENO);
        else
            connectToNull(STDOUT_FILENO, O_WRONLY);
        if (setup.mergesError)
            posix_spawn_file_actions_adddup2(&m_actions, STDOUT_FILENO, STDERR_FILENO);
        else
            connectToNull(STDERR_FILENO, O_WRONLY);
    }

    /// A tool starts with no signal blocked and none ignored, whatever our own process does with them.
    void resetSignals(bool newSession) {
        sigset_t none;
        sigemptyset(&none);
        posix_spawnattr_setsigmask(&m_attributes, &none);
        sigset_t usual;
        sigemptyset(&usual);
        for (const int signal : {SIGPIPE, SIGTERM, SIGINT, SIGHUP, SIGQUIT, SIGCHLD})
            sigaddset(&usual, signal);
        posix_spawnattr_setsigdefault(&m_attributes, &usual);
        int flags = POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF;
        if (newSession)
            flags |= POSIX_SPAWN_SETSID;
        posix_spawnattr_setflags(&m_attributes, static_cast<short>(flags));
    }

    [[nodiscard]] pid_t run(const std::string &path, const std::vector<std::string> &arguments) const {
        std::vector<char *> vector{const_cast<char *>(path.c_str())};
        for (const std::string &argument : arguments)
            vector.push_back(const_cast<char *>(argument.c_str()));
        vector.push_back(nullptr);
        pid_t pid = -1;
        const int error = posix_spawn(&pid, path.c_str(), &m_actions, &m_attributes, vector.data(), environ);
        return error == 0 ? pid : -1;
    }

private:
    void connectToNull(int fd, int mode) {
        posix_spawn_file_actions_addopen(&m_actions, fd, "/dev/null", mode, 0);
    }

    posix_spawn_file_actions_t m_actions{};
    posix_spawnattr_t m_attributes{};
};

} // namespace

ChildProcess ChildProcess::start(const std::string &path, const std::vector<std::string> &arguments,
                                 const Setup &setup) {
    SpawnPlan plan;
    plan.wire(setup);
    plan.resetSignals(setup.newSession);
    ChildProcess child;
    child.m_pid = plan.run(path, arguments);
    // The child isn't reaped yet, so its number can't have passed to another process.
    if (child.m_pid > 0)
        child.m_handle = openProcessDescriptor(child.m_pid);
    return child;
}

ChildProcess::ChildProcess(ChildProcess &&other) noexcept
    : m_pid(std::exchange(other.m_pid, -1)),
      m_isReaped(other.m_isReaped),
      m_handle(std::move(other.m_handle)) {}

ChildProcess::~ChildProcess() {
    if (m_pid <= 0 || reap(WNOHANG))
        return;
    try {
        std::thread([pid = m_pid] { waitpid(pid, nullptr, 0); }).detach();
    } catch (const std::system_error &) {
        // No more threads are allowed: the process stays a zombie until this program ends.
    }
}

bool ChildProcess::reap(int flags) {
    pid_t result = 0;
    do
        result = waitpid(m_pid, nullptr, flags);
    while (result < 0 && errno == EINTR);
    // ECHILD: the whole program ignores its children's ends, and the system reaped this one.
    m_isReaped = result == m_pid || (result < 0 && errno == ECHILD);
    if (m_isReaped)
        m_pid = -1;
    return m_isReaped;
}

bool ChildProcess::waitUntil(std::chrono::steady_clock::time_point deadline) {
    constexpr std::int64_t longestNap = 60'000;
    constexpr std::int64_t napWithoutHandle = 10;
    while (m_pid > 0 && !reap(WNOHANG)) {
        const auto left =
            std::chrono::ceil<milliseconds>(deadline - std::chrono::steady_clock::now()).count();
        if (left <= 0)
            return false;
        pollfd ended{.fd = m_handle.get(), .events = POLLIN, .revents = 0};
        poll(&ended, 1, static_cast<int>(std::min(left, m_handle.isOpen() ? longestNap : napWithoutHandle)));
    }
    return true;
}

void ChildProcess::terminate() {
    if (m_pid > 0)
        kill(m_pid, SIGTERM);
}

} // namespace tarnvale
