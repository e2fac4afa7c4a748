#include "discovery/linux/walkDescriptors.h"

#include "discovery/linux/inParts.h"
#include "discovery/text.h"

#include <algorithm>
#include <cerrno>
#include <iterator>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace tarnvale {

namespace {

/// The inode in the target of a descriptor's link, "socket:[31337]" (proc(5)).
std::optional<std::uint64_t> socketInode(std::string_view target) {
    constexpr std::string_view prefix = "socket:[";
    if (!target.starts_with(prefix) || !target.ends_with(']'))
        return std::nullopt;
    target.remove_prefix(prefix.size());
    target.remove_suffix(1);
    return parseInteger<std::uint64_t>(target);
}

/// Reads links that are short when they are of interest: a longer target is cut and matches nothing.
class ShortLink {
public:
    std::string_view read(int folder, const char *path) {
        const ssize_t length = readlinkat(folder, path, m_target.data(), m_target.size());
        return {m_target.data(), length < 0 ? 0 : static_cast<std::size_t>(length)};
    }

private:
    std::array<char, 48> m_target;
};

/// Looks through one table of descriptors; false when it can't be opened.
bool walkTable(int procFolder, WalkedProcess &process, Pid thread, const std::vector<std::uint64_t> &inodes,
               std::vector<Holder> &holders) {
    const Pid pid = process.entry.pid;
    const FileDescriptor table = openFolderAt(procFolder, ProcPath(pid, "fd", thread).get());
    if (!table.isOpen())
        return false;
    ShortLink link;
    process.descriptors = 0;
    return forEachEntry(table.get(), [&](const char *name, ino_t) {
        if (*name == '.')
            return;
        ++process.descriptors;
        if (process.isRefused)
            return; // and so would be the others
        const std::string_view target = link.read(table.get(), name);
        if (target.empty() && errno == EACCES)
            process.isRefused = true;
        const auto inode = socketInode(target);
        if (inode && std::binary_search(inodes.begin(), inodes.end(), *inode))
            holders.push_back({*inode, pid, parseInteger<std::int32_t>(name).value_or(0), thread});
    });
}

/// The process is this user's; its folder tells that even where everything below it is refused.
bool isOwn(int procFolder, Pid pid) {
    struct stat status {};
    return fstatat(procFolder, ProcPath(pid, "").get(), &status, 0) == 0 && status.st_uid == geteuid();
}

void walkProcess(int procFolder, WalkedProcess &process, const std::vector<std::uint64_t> &inodes,
                 std::vector<Holder> &holders) {
    process.isRefused = false;
    process.descriptors = 0;
    if (!walkTable(procFolder, process, 0, inodes, holders))
        process.isRefused = errno == EACCES || errno == EPERM;
    // When the first thread has ended, its table is empty to root and refused to its own user, and the other
    // threads show the descriptors.
    const bool mayHaveLostFirst =
        process.isRefused ? isOwn(procFolder, process.entry.pid) : process.descriptors == 0;
    const auto thread = mayHaveLostFirst ? livingThread(procFolder, process.entry.pid) : std::nullopt;
    if (!thread)
        return;
    const bool wasRefused = std::exchange(process.isRefused, false);
    if (!walkTable(procFolder, process, *thread, inodes, holders))
        process.isRefused = wasRefused;
}

/// Gathers what `work(index, holders)` adds for each number below `count`, on two threads when that pays.
template<typename Work>
std::vector<Holder> gather(std::size_t count, std::size_t worthTwo, const Work &work) {
    std::array<std::vector<Holder>, 2> found;
    inParts(count, worthTwo, [&](std::size_t begin, std::size_t end, std::size_t worker) {
        for (std::size_t i = begin; i < end; ++i)
            work(i, found.at(worker));
    });
    found[0].insert(found[0].end(), found[1].begin(), found[1].end());
    return std::move(found[0]);
}

} // namespace

void sortUniqueHolders(std::vector<Holder> &holders) {
    std::sort(holders.begin(), holders.end());
    const auto isSame = [](const Holder &a, const Holder &b) { return a.inode == b.inode && a.pid == b.pid; };
    holders.erase(std::unique(holders.begin(), holders.end(), isSame), holders.end());
}

std::vector<Holder> walkDescriptors(int procFolder, std::span<WalkedProcess> processes,
                                    const std::vector<std::uint64_t> &inodes) {
    constexpr std::size_t worthTwo = 50;
    auto holders = gather(processes.size(), worthTwo, [&](std::size_t i, std::vector<Holder> &found) {
        walkProcess(procFolder, processes[i], inodes, found);
    });
    sortUniqueHolders(holders);
    return holders;
}

std::vector<Holder> confirmedHolders(int procFolder, std::vector<Holder> holders,
                                     const MayHaveRun &mayHaveRun) {
    constexpr std::size_t worthTwo = 256;
    std::sort(holders.begin(), holders.end(), [](const Holder &a, const Holder &b) { return a.pid < b.pid; });
    const auto means = [&](const Holder &holder) {
        const ProcPath path(holder.pid, "fd/", holder.descriptor, holder.thread);
        return socketInode(ShortLink().read(procFolder, path.get())) == holder.inode;
    };
    std::vector<std::span<const Holder>> processes;
    for (auto first = holders.begin(); first != holders.end();) {
        const auto last =
            std::find_if(first, holders.end(), [&](const Holder &h) { return h.pid != first->pid; });
        processes.emplace_back(first, last);
        first = last;
    }
    auto confirmed = gather(processes.size(), worthTwo, [&](std::size_t i, std::vector<Holder> &found) {
        const bool isSure = !mayHaveRun(processes[i].front().pid);
        std::copy_if(processes[i].begin(), processes[i].end(), std::back_inserter(found),
                     [&](const Holder &holder) { return isSure || means(holder); });
    });
    std::sort(confirmed.begin(), confirmed.end());
    return confirmed;
}

} // namespace tarnvale
