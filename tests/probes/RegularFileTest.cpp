#include "probes/RegularFile.h"

#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

namespace tarnvale {
namespace {

TEST(RegularFileTest, anyPartCanBeRead) {
    const TemporaryFolder folder;
    const auto file = RegularFile::open(folder.write("a", "0123456789"));
    ASSERT_TRUE(file);
    EXPECT_EQ(file->size(), 10u);
    EXPECT_EQ(file->read(0, 4), "0123");
    EXPECT_EQ(file->read(8, 4), "89");
    EXPECT_EQ(file->read(10, 4), "");
    EXPECT_EQ(file->read(99, 4), "");
}

TEST(RegularFileTest, linksAreFollowed) {
    const TemporaryFolder folder;
    folder.write("a", "text");
    std::filesystem::create_symlink("a", folder.path("link"));
    EXPECT_EQ(readRegularFile(folder.path("link"), 10), "text");
}

TEST(RegularFileTest, nothingElseIsOpened) {
    const TemporaryFolder folder;
    ASSERT_EQ(mkfifo(folder.path("pipe").c_str(), 0600), 0);
    std::filesystem::create_symlink("nowhere", folder.path("dangling"));
    std::filesystem::create_symlink("loop", folder.path("loop"));
    for (const std::string &path :
         {folder.path("pipe"), folder.path("dangling"), folder.path("loop"), folder.path("missing"),
          folder.path(), std::string("/dev/zero"), std::string("/dev/tty"), std::string()}) {
        EXPECT_FALSE(RegularFile::open(path)) << path;
        EXPECT_FALSE(readRegularFile(path, 100)) << path;
    }
}

TEST(RegularFileTest, aFileOfTheLimitIsReadAndALargerOneIsNot) {
    const TemporaryFolder folder;
    const std::string path = folder.write("a", "0123456789");
    EXPECT_EQ(readRegularFile(path, 10), "0123456789");
    EXPECT_FALSE(readRegularFile(path, 9));
}

TEST(RegularFileTest, aFileThatHidesItsSizeIsReadAllTheSame) {
    const auto content = readRegularFile("/proc/self/status", 100'000);
    if (access("/proc/self/status", R_OK) != 0)
        GTEST_SKIP() << "no /proc here";
    ASSERT_TRUE(content);
    EXPECT_TRUE(content->starts_with("Name:"));
    EXPECT_FALSE(readRegularFile("/proc/self/status", 10)) << "more than the limit came";
}

} // namespace
} // namespace tarnvale
