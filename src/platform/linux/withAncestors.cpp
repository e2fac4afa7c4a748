#include "platform/linux/withAncestors.h"

#include "discovery/linux/ProcStat.h"
#include "discovery/linux/procFiles.h"
#include "discovery/processTree.h"

#include <fcntl.h>

namespace tarnvale {

std::vector<Pid> withAncestors(Pid pid, const std::string &procFolder) {
    const FileDescriptor folder = openFolderAt(AT_FDCWD, procFolder.c_str());
    ProcessTable table;
    std::string content;
    for (Pid next = pid; next > 1 && !table.contains(next) && folder.isOpen();) {
        constexpr std::size_t longestStat = 4096;
        if (!readFileAt(folder.get(), ProcPath(next, "stat").get(), content, longestStat))
            break;
        const auto stat = parseProcStat(content);
        if (!stat)
            break;
        table[next] = {stat->ppid, {}};
        next = stat->ppid;
    }
    return ancestorChain(pid, table);
}

} // namespace tarnvale
