#include "support/runProgram.h"

#include "discovery/FileDescriptor.h"
#include "support/TemporaryFolder.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <spawn.h>
#include <stdexcept>
#include <sys/wait.h>

extern char **environ;

namespace tarnvale {

namespace {

FileDescriptor openForWriting(const std::string &path) {
    return FileDescriptor(open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600));
}

int waitStatus(pid_t pid) {
    int status = 0;
    while (waitpid(pid, &status, 0) < 0)
        if (errno != EINTR)
            throw std::runtime_error("the program was reaped by someone else");
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

} // namespace

ProgramRun runProgram(const std::vector<std::string> &arguments, std::optional<int> output) {
    // Files rather than pipes take both streams whole, whatever their order.
    const TemporaryFolder folder;
    const FileDescriptor gathered = openForWriting(folder.path("output"));
    const FileDescriptor error = openForWriting(folder.path("error"));

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&actions, output.value_or(gathered.get()), STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, error.get(), STDERR_FILENO);
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    sigset_t usual;
    sigemptyset(&usual);
    sigaddset(&usual, SIGPIPE);
    posix_spawnattr_setsigdefault(&attributes, &usual);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF);

    std::vector<char *> words;
    for (const std::string &argument : arguments)
        words.push_back(const_cast<char *>(argument.c_str()));
    words.push_back(nullptr);
    pid_t pid = -1;
    const int failure = posix_spawn(&pid, words[0], &actions, &attributes, words.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    posix_spawnattr_destroy(&attributes);
    if (failure != 0)
        throw std::runtime_error("can't start " + arguments[0]);

    const int status = waitStatus(pid);
    return {status, readFile(folder.path("output")), readFile(folder.path("error"))};
}

} // namespace tarnvale
