#include "platform/linux/spawn.h"

#include "discovery/FileDescriptor.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <spawn.h>
#include <unistd.h>

namespace tarnvale {

namespace {

constexpr int firstFree = 10; ///< above all numbers that a program is promised

class FileActions {
public:
    FileActions() { posix_spawn_file_actions_init(&m_actions); }
    FileActions(const FileActions &) = delete;
    FileActions &operator=(const FileActions &) = delete;
    ~FileActions() { posix_spawn_file_actions_destroy(&m_actions); }
    [[nodiscard]] posix_spawn_file_actions_t *get() { return &m_actions; }

    /// Returns 0 or an `errno`.
    int wire(const std::map<int, int> &descriptors) {
        // A number of ours may be one that the program is promised for something else.
        for (const auto &[number, ours] : descriptors) {
            m_lifted.emplace_back(fcntl(ours, F_DUPFD_CLOEXEC, firstFree));
            if (!m_lifted.back().isOpen())
                return errno;
            posix_spawn_file_actions_adddup2(&m_actions, m_lifted.back().get(), number);
        }
        for (int number = 0; number < firstFree; ++number)
            if (!descriptors.contains(number))
                leaveOut(number);
        posix_spawn_file_actions_addclosefrom_np(&m_actions, firstFree);
        return 0;
    }

private:
    void leaveOut(int number) {
        if (number <= STDERR_FILENO)
            posix_spawn_file_actions_addopen(&m_actions, number, "/dev/null",
                                             number == STDIN_FILENO ? O_RDONLY : O_WRONLY, 0);
        else
            posix_spawn_file_actions_addclose(&m_actions, number);
    }

    posix_spawn_file_actions_t m_actions{};
    std::vector<FileDescriptor> m_lifted;
};

class Attributes {
public:
    explicit Attributes(bool newSession) {
        posix_spawnattr_init(&m_attributes);
        sigset_t signals;
        sigemptyset(&signals);
        posix_spawnattr_setsigmask(&m_attributes, &signals);
        for (int signal = 1; signal < SIGSYS + 1; ++signal)
            if (signal != SIGKILL && signal != SIGSTOP)
                sigaddset(&signals, signal);
        posix_spawnattr_setsigdefault(&m_attributes, &signals);
        const int flags =
            POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF | (newSession ? POSIX_SPAWN_SETSID : 0);
        posix_spawnattr_setflags(&m_attributes, static_cast<short>(flags));
    }
    Attributes(const Attributes &) = delete;
    Attributes &operator=(const Attributes &) = delete;
    ~Attributes() { posix_spawnattr_destroy(&m_attributes); }
    [[nodiscard]] const posix_spawnattr_t *get() const { return &m_attributes; }

private:
    posix_spawnattr_t m_attributes{};
};

bool isWhole(const std::string &text) {
    return text.find('\0') == std::string::npos;
}

/// Every text reaches the program as it is, not cut at a zero byte.
bool isWhole(const SpawnOrder &order) {
    return isWhole(order.path) && std::all_of(order.arguments.begin(), order.arguments.end(),
                                              [](const std::string &text) { return isWhole(text); });
}

/// "KEY=value" of each; keys that can't be written so are left out.
std::vector<std::string> entriesOf(const std::map<std::string, std::string> &environment) {
    std::vector<std::string> entries;
    for (const auto &[key, value] : environment)
        if (!key.empty() && key.find('=') == std::string::npos && isWhole(key) && isWhole(value))
            entries.push_back(std::string(key).append("=").append(value));
    return entries;
}

std::vector<char *> pointersTo(const std::vector<std::string> &texts) {
    std::vector<char *> pointers;
    pointers.reserve(texts.size() + 1);
    for (const std::string &text : texts)
        pointers.push_back(const_cast<char *>(text.c_str()));
    pointers.push_back(nullptr);
    return pointers;
}

} // namespace

std::expected<pid_t, int> spawn(const SpawnOrder &order) {
    if (!isWhole(order))
        return std::unexpected(EINVAL);
    FileActions actions;
    if (order.folder >= 0)
        posix_spawn_file_actions_addfchdir_np(actions.get(), order.folder);
    if (const int error = actions.wire(order.descriptors); error != 0)
        return std::unexpected(error);
    const Attributes attributes(order.newSession);
    std::vector<char *> words = pointersTo(order.arguments);
    words.insert(words.begin(), const_cast<char *>(order.path.c_str()));
    const auto entries = order.environment ? entriesOf(*order.environment) : std::vector<std::string>();
    const std::vector<char *> variables = pointersTo(entries);
    pid_t pid = -1;
    const int error = posix_spawn(&pid, order.path.c_str(), actions.get(), attributes.get(), words.data(),
                                  order.environment ? variables.data() : environ);
    return error == 0 ? std::expected<pid_t, int>(pid) : std::unexpected(error);
}

} // namespace tarnvale
