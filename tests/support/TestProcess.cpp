#include "support/TestProcess.h"

#include "discovery/text.h"
#include "support/TemporaryFolder.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <spawn.h>
#include <stdexcept>
#include <sys/wait.h>
#include <thread>

extern char **environ;

namespace tarnvale {

namespace {

std::vector<char *> pointersTo(const std::vector<std::string> &texts) {
    std::vector<char *> pointers;
    for (const std::string &text : texts)
        pointers.push_back(const_cast<char *>(text.c_str()));
    pointers.push_back(nullptr);
    return pointers;
}

/// Whether `pid`, a child of ours, has ended; it stays unreaped.
bool hasEnded(Pid pid) {
    siginfo_t info{};
    return waitid(P_PID, static_cast<id_t>(pid), &info, WEXITED | WNOHANG | WNOWAIT) == 0 &&
           info.si_pid == pid;
}

/// The letter of a process's state (proc(5)); nothing when there is no such process.
std::string stateOf(Pid pid) {
    const std::string stat = readFile("/proc/" + std::to_string(pid) + "/stat");
    const std::size_t end = stat.rfind(") ");
    return end == stat.npos ? std::string() : stat.substr(end + 2, 1);
}

/// The program has been loaded and waits for something, or has ended. The kernel lets the parent go on before
/// the command line can be read.
bool hasSettled(Pid pid) {
    const std::string state = stateOf(pid);
    return state == "Z" || (state == "S" && !readFile("/proc/" + std::to_string(pid) + "/cmdline").empty());
}

} // namespace

TestProcess::TestProcess(const std::vector<std::string> &arguments,
                         const std::optional<std::vector<std::string>> &environment) {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0)
        throw std::runtime_error("no pipe can be made");
    const FileDescriptor input(ends[0]);
    m_input = FileDescriptor(ends[1]);

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, input.get(), STDIN_FILENO);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    const std::vector<char *> words = pointersTo(arguments);
    const std::vector<char *> entries = environment ? pointersTo(*environment) : std::vector<char *>();
    const int error = posix_spawn(&m_pid, words[0], &actions, nullptr, words.data(),
                                  environment ? entries.data() : environ);
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0)
        throw std::runtime_error("can't start " + arguments[0]);
    eventually([this] { return hasSettled(m_pid); });
}

TestProcess::~TestProcess() {
    if (m_status)
        return;
    kill(m_pid, SIGKILL);
    while (waitpid(m_pid, nullptr, 0) < 0 && errno == EINTR) {
    }
}

bool TestProcess::isRunning() const {
    return !m_status && !hasEnded(m_pid);
}

std::optional<int> TestProcess::waitForEnd() {
    int status = 0;
    if (!m_status && eventually([&] { return waitpid(m_pid, &status, WNOHANG) == m_pid; }))
        m_status = status;
    return m_status;
}

void TestProcess::becomeZombie() {
    m_input.reset();
    if (!eventually([&] { return hasEnded(m_pid); }))
        throw std::runtime_error("the process doesn't end");
}

bool eventually(const std::function<bool()> &condition, std::chrono::milliseconds timeout) {
    const auto deadline = std::chrono::steady_clock::now() + timeout;
    while (!condition()) {
        if (std::chrono::steady_clock::now() >= deadline)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return true;
}

bool isAlive(Pid pid) {
    const std::string state = stateOf(pid);
    return !state.empty() && state != "Z" && state != "X";
}

void killMarked(Pid pid, std::string_view mark) {
    if (pid > 1 && readFile("/proc/" + std::to_string(pid) + "/cmdline").find(mark) != std::string::npos)
        kill(pid, SIGKILL);
}

Pid awaitPid(const std::string &path) {
    std::string text;
    eventually([&] { return (text = readFile(path)).ends_with('\n'); });
    const auto lines = nonEmptyLines(text);
    return lines.empty() ? -1 : parseInteger<Pid>(lines.front()).value_or(-1);
}

} // namespace tarnvale
