#pragma once

#include "discovery/FileDescriptor.h"

#include <functional>
#include <optional>
#include <string>
#include <sys/types.h>

namespace tarnvale {

/// A forked child that runs `body` and then waits until it is killed, at the latest when this object goes or
/// the test ends.
class ForkedChild {
public:
    explicit ForkedChild(const std::function<std::string()> &body);
    ForkedChild(const ForkedChild &) = delete;
    ForkedChild &operator=(const ForkedChild &) = delete;
    ~ForkedChild();

    [[nodiscard]] pid_t pid() const { return m_pid; }

    /// What `body` gave, waited for; nothing when the child died before.
    [[nodiscard]] const std::optional<std::string> &said() const { return m_said; }

    /// Ends the child and everything about it.
    void kill();

private:
    pid_t m_pid = -1;
    std::optional<std::string> m_said;
};

/// Runs `body` in a forked child; what it gave, nothing when the child died.
[[nodiscard]] std::optional<std::string> inForkedChild(const std::function<std::string()> &body);

/// Runs `body` as process 1 of pid, mount and network namespaces of its own, with a process file system and a
/// loopback that nobody else uses. "skip: reason" when this user may not make them.
[[nodiscard]] std::optional<std::string> inOwnNamespaces(const std::function<std::string()> &body);

/// Gives up root's rights for those of an ordinary user who owns nothing; for forked children.
[[nodiscard]] bool becomeAnotherUser();

} // namespace tarnvale
