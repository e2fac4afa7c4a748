#pragma once

#include "discovery/FileDescriptor.h"

#include <cstdint>
#include <sys/types.h>

namespace tarnvale {

/// A descriptor that becomes readable when a child of ours has ended, and the care that none is left a
/// zombie.
class ChildWatch {
public:
    enum class Means : std::uint8_t {
        best,   ///< a descriptor of the process, where the system has them
        thread, ///< a thread that waits
    };

    explicit ChildWatch(pid_t child, Means means = Means::best);
    ChildWatch(const ChildWatch &) = delete;
    ChildWatch &operator=(const ChildWatch &) = delete;

    /// A child that wasn't reaped by `reap` goes on, and is reaped when it ends.
    ~ChildWatch();

    /// -1 when the machine is short of descriptors or threads: then the end isn't told.
    [[nodiscard]] int descriptor() const { return m_descriptor.get(); }

    /// The child has ended. Doesn't wait, and leaves it to be reaped.
    [[nodiscard]] bool hasEnded() const;

    /// Takes the wait status of a child that has ended, once; 0 when somebody else has taken it.
    [[nodiscard]] int reap();

private:
    void startWaiter();

    pid_t m_child;
    bool m_isReaped = false;
    bool m_hasWaiter = false; ///< a thread that reaps the child itself when this object is gone
    FileDescriptor m_descriptor;
};

} // namespace tarnvale
