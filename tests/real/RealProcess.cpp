#include "real/RealProcess.h"

#include "discovery/findTool.h"
#include "discovery/text.h"
#include "platform/process/ProcessHandle.h"
#include "support/TemporaryFolder.h"
#include "support/TestProcess.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <filesystem>
#include <grp.h>
#include <gtest/gtest.h>
#include <list>
#include <stdexcept>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

extern char **environ;

namespace tarnvale {

namespace {

using namespace std::chrono_literals;

std::vector<Pid> childrenOf(Pid pid) {
    const std::string number = std::to_string(pid);
    const std::string content = readFile("/proc/" + number + "/task/" + number + "/children");
    std::vector<Pid> children;
    for (const std::string_view word : words(content))
        if (const auto child = parseInteger<Pid>(word))
            children.push_back(*child);
    return children;
}

/// The processes that carry `mark` in the environment that they were started with.
std::vector<Pid> marked(const std::string &mark) {
    std::vector<Pid> pids;
    std::error_code ignored;
    for (const auto &entry : std::filesystem::directory_iterator("/proc", ignored))
        if (const auto pid = parseInteger<Pid>(entry.path().filename().native()))
            if (isAlive(*pid) && readFile(entry.path() / "environ").find(mark) != std::string::npos)
                pids.push_back(*pid);
    return pids;
}

/// Waits until the test dies without having cleaned up, then ends what it left behind.
[[noreturn]] void guard(Pid test, const std::string &mark) {
    sigset_t death;
    sigemptyset(&death);
    sigaddset(&death, SIGUSR1);
    sigprocmask(SIG_BLOCK, &death, nullptr);
    prctl(PR_SET_PDEATHSIG, SIGUSR1);
    int number = 0;
    if (getppid() == test)
        sigwait(&death, &number);
    for (const int strength : {SIGTERM, SIGKILL}) {
        for (const Pid pid : marked(mark))
            kill(pid, strength);
        eventually([&] { return marked(mark).empty(); }, 3s);
    }
    _exit(0);
}

/// Takes in the orphans of whatever a test started, and tells of any that a test forgot.
class Household : public testing::Environment {
public:
    void SetUp() override {
        prctl(PR_SET_CHILD_SUBREAPER, 1);
        const Pid test = getpid();
        const std::string family = std::to_string(test) + "." + std::to_string(time(nullptr));
        setenv(familyVariable, family.c_str(), 1);
        m_guard = fork();
        if (m_guard == 0)
            guard(test, std::string(familyVariable) + "=" + family + std::string(1, '\0'));
    }

    void TearDown() override {
        kill(m_guard, SIGKILL);
        waitpid(m_guard, nullptr, 0);
        eventually([] { return !hasChild(); }, 5s); // what a bus has started ends some moments after it
        for (const Pid pid : childrenOf(getpid())) {
            ADD_FAILURE() << "left behind: " << readFile("/proc/" + std::to_string(pid) + "/cmdline");
            kill(pid, SIGKILL);
            waitpid(pid, nullptr, 0);
        }
    }

private:
    /// Whether there is one that hasn't ended.
    static bool hasChild() {
        while (waitpid(-1, nullptr, WNOHANG) > 0) {
        }
        return !childrenOf(getpid()).empty();
    }

    Pid m_guard = -1;
};

[[maybe_unused]] const auto *const household = testing::AddGlobalTestEnvironment(new Household);

[[noreturn]] void giveUp(const char *what) {
    const std::string text = std::string(what) + ": " + strerror(errno) + "\n";
    static_cast<void>(!write(STDERR_FILENO, text.data(), text.size()));
    _exit(127);
}

/// In the child, before it is what it is to be.
void prepare(const ProcessSetup &setup, Pid parent) {
    for (const std::string &group : setup.controlGroups) {
        const FileDescriptor members(open((group + "/cgroup.procs").c_str(), O_WRONLY | O_CLOEXEC));
        if (write(members.get(), "0", 1) != 1)
            giveUp("can't enter the control group");
    }
    if (!setup.folder.empty() && chdir(setup.folder.c_str()) != 0)
        giveUp("can't enter the folder");
    if (setup.user && (setgroups(0, nullptr) != 0 || setresgid(*setup.user, *setup.user, *setup.user) != 0 ||
                       setresuid(*setup.user, *setup.user, *setup.user) != 0))
        giveUp("can't become the user");
    // The test may be killed; a server must not outlive it.
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    if (getppid() != parent)
        _exit(127);
}

[[noreturn]] void execute(const std::vector<std::string> &words, const ProcessSetup &setup) {
    std::vector<char *> arguments;
    for (const std::string &word : words)
        arguments.push_back(const_cast<char *>(word.c_str()));
    arguments.push_back(nullptr);
    if (setup.hasOnlyThatEnvironment)
        clearenv();
    for (const std::string &entry : setup.environment)
        putenv(const_cast<char *>(entry.c_str()));
    execve(arguments[0], arguments.data(), environ);
    giveUp(arguments[0]);
}

} // namespace

RealProcess::RealProcess(const std::vector<std::string> &words, const ProcessSetup &setup) {
    start(setup, [&] { execute(words, setup); });
}

RealProcess::RealProcess(const std::function<void()> &body, const ProcessSetup &setup) {
    start(setup, body);
}

void RealProcess::start(const ProcessSetup &setup, const std::function<void()> &body) {
    m_output = memfd_create("output", MFD_CLOEXEC);
    const Pid parent = getpid();
    m_pid = fork();
    if (m_pid < 0)
        throw std::runtime_error("can't fork");
    if (m_pid > 0)
        return;
    dup2(open("/dev/null", O_RDONLY | O_CLOEXEC), STDIN_FILENO);
    dup2(m_output, STDOUT_FILENO);
    dup2(m_output, STDERR_FILENO);
    fcntl(STDOUT_FILENO, F_SETFL, O_APPEND);
    prepare(setup, parent);
    body();
    _exit(0);
}

std::string RealProcess::output() const {
    std::string text;
    char piece[4096];
    for (ssize_t count = 0;
         (count = pread(m_output, piece, sizeof piece, static_cast<off_t>(text.size()))) > 0;)
        text.append(piece, static_cast<std::size_t>(count));
    return text;
}

void RealProcess::signal(int number) const {
    if (m_pid > 1)
        kill(m_pid, number);
}

bool RealProcess::waitForEnd(std::chrono::milliseconds timeout) {
    const auto isReaped = [&] { return m_pid < 0 || waitpid(m_pid, nullptr, WNOHANG) == m_pid; };
    if (!eventually(isReaped, timeout))
        return false;
    m_pid = -1;
    return true;
}

void RealProcess::end() {
    // Handles first: a pid of the family may be another's by the time it is killed.
    std::list<std::pair<Pid, ProcessHandle>> family;
    if (m_pid > 0)
        for (const Pid pid : descendantsOf(m_pid))
            family.emplace_back(pid, ProcessHandle(pid));
    signal(SIGCONT);
    signal(SIGTERM);
    if (!waitForEnd(5s)) {
        signal(SIGKILL);
        waitForEnd();
    }
    for (const auto &[pid, handle] : family) {
        static_cast<void>(handle.signal(SIGKILL));
        static_cast<void>(handle.waitForEnd(5s));
        waitpid(pid, nullptr, WNOHANG);
    }
    if (m_output >= 0)
        close(std::exchange(m_output, -1));
}

std::vector<Pid> descendantsOf(Pid pid) {
    std::vector<Pid> family = childrenOf(pid);
    for (std::size_t i = 0; i < family.size(); ++i)
        for (const Pid child : childrenOf(family[i]))
            family.push_back(child);
    return family;
}

ProcessTimes timesOf(Pid pid) {
    const std::string stat = readFile("/proc/" + std::to_string(pid) + "/stat");
    const auto fields = words(std::string_view(stat).substr(stat.rfind(')') + 1));
    timespec boot{};
    clock_gettime(CLOCK_BOOTTIME, &boot);
    const auto ticks = static_cast<double>(sysconf(_SC_CLK_TCK));
    const auto field = [&](std::size_t i) { return parseDouble(fields.at(i)).value_or(0) / ticks; };
    // proc(5): what follows the name is field 3; 14 and 15 are the times, 22 is the start.
    return {field(11) + field(12),
            static_cast<double>(boot.tv_sec) + static_cast<double>(boot.tv_nsec) / 1e9 - field(19)};
}

std::string commandOf(Pid pid) {
    std::string name = readFile("/proc/" + std::to_string(pid) + "/comm");
    if (name.ends_with('\n'))
        name.pop_back();
    return name;
}

std::optional<std::string> findProgram(const std::string &name) {
    std::vector<std::string> candidates;
    for (const char *folder :
         {"/usr/bin/", "/usr/sbin/", "/bin/", "/sbin/", "/usr/local/bin/", "/usr/local/sbin/"})
        candidates.push_back(folder + name);
    return firstExecutable(candidates);
}

ScopedVariable::ScopedVariable(std::string name, const std::string &value) : m_name(std::move(name)) {
    if (const char *before = std::getenv(m_name.c_str()))
        m_before = before;
    setenv(m_name.c_str(), value.c_str(), 1);
}

ScopedVariable::~ScopedVariable() {
    if (m_before)
        setenv(m_name.c_str(), m_before->c_str(), 1);
    else
        unsetenv(m_name.c_str());
}

} // namespace tarnvale
