#include "discovery/linux/procFiles.h"

#include "support/FakeProc.h"

#include <fcntl.h>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace tarnvale {
namespace {

using testing::ElementsAre;

class ProcFilesTest : public testing::Test {
protected:
    FakeProc proc;
    FileDescriptor folder = openFolderAt(AT_FDCWD, proc.procFolder().c_str());
    std::string content = "left from before";
};

TEST_F(ProcFilesTest, pathsAreBuiltInPlace) {
    EXPECT_STREQ(ProcPath(42, "stat").get(), "42/stat");
    EXPECT_STREQ(ProcPath(42, "cmdline", 43).get(), "42/task/43/cmdline");
    EXPECT_STREQ(ProcPath(42, "fd/", 7, 0).get(), "42/fd/7");
    EXPECT_STREQ(ProcPath(2147483647, "fd/", 2147483647, 2147483647).get(),
                 "2147483647/task/2147483647/fd/2147483647");
    EXPECT_LT(std::string(ProcPath(1, std::string(500, 'x')).get()).size(), 64u) << "cut, never overrun";
}

TEST_F(ProcFilesTest, aFileIsReadUpToTheLimit) {
    const std::string text(100'000, 'x');
    proc.write("proc/long", text);
    ASSERT_TRUE(readFileAt(folder.get(), "long", content, 1u << 20));
    EXPECT_EQ(content, text);
    ASSERT_TRUE(readFileAt(folder.get(), "long", content, 4099));
    EXPECT_EQ(content.size(), 4099u);
    proc.write("proc/empty", "");
    ASSERT_TRUE(readFileAt(folder.get(), "empty", content, 4096));
    EXPECT_EQ(content, "");
}

TEST_F(ProcFilesTest, aFileWithoutAWriterIsNotWaitedFor) {
    ASSERT_EQ(mkfifo((proc.procFolder() + "/fifo").c_str(), 0600), 0);
    EXPECT_TRUE(readFileAt(folder.get(), "fifo", content, 4096));
    EXPECT_EQ(content, "");
}

TEST_F(ProcFilesTest, whatCannotBeReadSaysSo) {
    EXPECT_FALSE(readFileAt(folder.get(), "none", content, 4096));
    EXPECT_FALSE(readFileAt(folder.get(), "net", content, 4096)) << "a folder opens but doesn't read";
    EXPECT_FALSE(readFileAt(-1, "none", content, 4096));
    EXPECT_FALSE(openFolderAt(folder.get(), "loadavg").isOpen());
    EXPECT_EQ(readLinkAt(folder.get(), "loadavg"), std::nullopt);
    EXPECT_FALSE(forEachEntry(-1, [](const char *, ino_t) { FAIL(); }));
}

TEST_F(ProcFilesTest, aFileThatCannotBeReadLeavesNoContent) {
    // An answer that a caller fails to check must not look like data.
    for (const char *path : {"none", "net"}) {
        content = "left from before";
        EXPECT_FALSE(readFileAt(folder.get(), path, content, 4096));
        EXPECT_EQ(content.substr(0, 32), "") << path;
    }
}

TEST_F(ProcFilesTest, onlyPidsAreProcesses) {
    for (const Pid pid : {20, 3, 100})
        proc.add({.pid = pid});
    for (const char *name : {"007", "0", "12x", "self", "99999999999", "-5"})
        std::filesystem::create_directory(proc.procFolder() + "/" + name);
    std::vector<Pid> pids;
    for (const ProcessEntry &process : listProcesses(folder.get()))
        pids.push_back(process.pid);
    EXPECT_THAT(pids, ElementsAre(1, 3, 20, 100));
}

TEST_F(ProcFilesTest, aPidThatIsGivenOutAgainHasAnotherEntry) {
    proc.add({.pid = 5});
    const auto before = listProcesses(folder.get());
    EXPECT_EQ(listProcesses(folder.get()), before) << "the listing begins at its start each time";
    proc.remove(5);
    proc.add({.pid = 5});
    const auto after = listProcesses(folder.get());
    ASSERT_EQ(after.size(), before.size());
    EXPECT_EQ(after.back().pid, before.back().pid);
    EXPECT_NE(after.back().entry, before.back().entry);
}

TEST_F(ProcFilesTest, aFolderOfManyEntriesIsListedWhole) {
    std::filesystem::create_directory(proc.procFolder() + "/many");
    for (int i = 0; i < 3000; ++i)
        std::filesystem::create_symlink("socket:[1]", proc.procFolder() + "/many/" + std::to_string(i));
    int count = 0;
    EXPECT_TRUE(forEachEntry(openFolderAt(folder.get(), "many").get(),
                             [&](std::string_view name, ino_t) { count += name.front() != '.' ? 1 : 0; }));
    EXPECT_EQ(count, 3000);
}

TEST_F(ProcFilesTest, anotherThreadThanTheFirstIsFound) {
    proc.add({.pid = 5});
    EXPECT_EQ(livingThread(folder.get(), 5), std::nullopt);
    EXPECT_EQ(livingThread(folder.get(), 6), std::nullopt);
    proc.addThread(5, 9, {.pid = 9});
    EXPECT_EQ(livingThread(folder.get(), 5), 9);
}

} // namespace
} // namespace tarnvale
