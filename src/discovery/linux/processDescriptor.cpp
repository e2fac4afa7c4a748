#include "discovery/processDescriptor.h"

#include <cerrno>
#include <sys/syscall.h>

namespace tarnvale {

// pidfd_open(2); glibc has had a wrapper only since 2.36.
FileDescriptor openProcessDescriptor(pid_t pid) {
    FileDescriptor descriptor(static_cast<int>(syscall(SYS_pidfd_open, pid, 0)));
    // Some kernels say EINVAL for a process that is just dying; a thread other than the first is EINVAL or
    // ENOENT.
    if (!descriptor.isOpen() && (errno == EINVAL || errno == ENOENT) && pid > 0)
        errno = ESRCH;
    return descriptor;
}

} // namespace tarnvale
