#include "discovery/FileDescriptor.h"

#include <gtest/gtest.h>

#include <fcntl.h>

namespace tarnvale {
namespace {

bool isOpenNumber(int fd) {
    return fcntl(fd, F_GETFD) >= 0;
}

int anOpenFile() {
    return open("/dev/null", O_RDONLY | O_CLOEXEC);
}

TEST(FileDescriptorTest, itClosesWhatItOwns) {
    const int number = anOpenFile();
    {
        const FileDescriptor file(number);
        EXPECT_TRUE(file.isOpen());
        EXPECT_EQ(file.get(), number);
    }
    EXPECT_FALSE(isOpenNumber(number));
}

TEST(FileDescriptorTest, resettingClosesOnce) {
    FileDescriptor file(anOpenFile());
    const int number = file.get();
    file.reset();
    EXPECT_FALSE(file.isOpen());
    EXPECT_FALSE(isOpenNumber(number));
    const FileDescriptor next(anOpenFile());
    file.reset();
    EXPECT_TRUE(isOpenNumber(next.get())) << "the number has passed to another file";
}

TEST(FileDescriptorTest, movingLeavesNothingBehind) {
    FileDescriptor first(anOpenFile());
    const int number = first.get();
    const FileDescriptor second(std::move(first));
    EXPECT_EQ(second.get(), number);
    EXPECT_FALSE(first.isOpen()); // NOLINT(bugprone-use-after-move): that is what is tested
}

TEST(FileDescriptorTest, assigningClosesTheOldFile) {
    FileDescriptor file(anOpenFile());
    const int old = file.get();
    file = FileDescriptor(anOpenFile());
    EXPECT_TRUE(file.isOpen());
    EXPECT_NE(file.get(), old);
    EXPECT_FALSE(isOpenNumber(old));
}

TEST(FileDescriptorTest, aDefaultOneIsNone) {
    const FileDescriptor none;
    EXPECT_FALSE(none.isOpen());
    EXPECT_EQ(none.get(), -1);
}

} // namespace
} // namespace tarnvale
