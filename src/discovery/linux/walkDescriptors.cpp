#include "discovery/linux/walkDescriptors.h"

#include "discovery/text.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <system_error>
#include <thread>

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

void walkProcess(int procFolder, WalkedProcess &process, const std::vector<std::uint64_t> &inodes,
                 std::vector<Holder> &holders) {
    process.isRefused = false;
    if (!walkTable(procFolder, process, 0, inodes, holders)) {
        process.isRefused = errno == EACCES || errno == EPERM;
        process.descriptors = 0;
    } else if (process.descriptors == 0) {
        // Either it has none, or its first thread has ended and the others show them.
        if (const auto thread = livingThread(procFolder, process.entry.pid))
            walkTable(procFolder, process, *thread, inodes, holders);
    }
}

/// Calls `work(begin, end, result)` for the parts of 0 to `count`, on two threads when that pays, and joins
/// the results.
template<typename Work> std::vector<Holder> inParts(std::size_t count, std::size_t worthTwo, Work work) {
    constexpr std::size_t part = 16;
    std::atomic<std::size_t> next = 0;
    const auto run = [&](std::vector<Holder> &result) {
        for (std::size_t begin = next.fetch_add(part); begin < count; begin = next.fetch_add(part))
            work(begin, std::min(begin + part, count), result);
    };
    std::vector<Holder> mine;
    if (count <= worthTwo) {
        run(mine);
        return mine;
    }
    std::vector<Holder> others;
    {
        std::jthread other;
        try {
            other = std::jthread([&] { run(others); });
        } catch (const std::system_error &) {
            // No more threads are allowed; this one does all the work.
        }
        run(mine);
    }
    mine.insert(mine.end(), others.begin(), others.end());
    return mine;
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
    std::vector<Holder> holders = inParts(
        processes.size(), worthTwo, [&](std::size_t begin, std::size_t end, std::vector<Holder> &result) {
            for (WalkedProcess &process : processes.subspan(begin, end - begin))
                walkProcess(procFolder, process, inodes, result);
        });
    sortUniqueHolders(holders);
    return holders;
}

std::vector<Holder> confirmedHolders(int procFolder, const std::vector<Holder> &holders) {
    constexpr std::size_t worthTwo = 256;
    std::vector<Holder> confirmed = inParts(
        holders.size(), worthTwo, [&](std::size_t begin, std::size_t end, std::vector<Holder> &result) {
            ShortLink link;
            for (std::size_t i = begin; i < end; ++i) {
                const Holder &holder = holders[i];
                const ProcPath path(holder.pid, "fd/", holder.descriptor, holder.thread);
                if (socketInode(link.read(procFolder, path.get())) == holder.inode)
                    result.push_back(holder);
            }
        });
    std::sort(confirmed.begin(), confirmed.end());
    return confirmed;
}

} // namespace tarnvale
