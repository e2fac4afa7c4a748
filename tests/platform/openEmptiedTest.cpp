#include "platform/openEmptied.h"

#include "platform/errorText.h"
#include "support/TemporaryFolder.h"

#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace tarnvale {
namespace {

mode_t permissionsOf(const std::string &path) {
    struct stat status {};
    return stat(path.c_str(), &status) == 0 ? status.st_mode & ALLPERMS : 0;
}

TEST(OpenEmptiedTest, foldersAndFileAreForTheUserAlone) {
    const TemporaryFolder folder;
    const auto file = openEmptied(folder.path("state/tarnvale/logs/a.log"));
    ASSERT_TRUE(file);
    for (const char *name : {"state", "state/tarnvale", "state/tarnvale/logs"})
        EXPECT_EQ(permissionsOf(folder.path(name)), 0700U) << name;
    EXPECT_EQ(permissionsOf(folder.path("state/tarnvale/logs/a.log")), 0600U);
    EXPECT_NE(fcntl(file->get(), F_GETFD) & FD_CLOEXEC, 0);
    EXPECT_EQ(fcntl(file->get(), F_GETFL) & O_NONBLOCK, 0);
}

TEST(OpenEmptiedTest, anOldFileIsEmptiedAndClosedToOthers) {
    const TemporaryFolder folder;
    const std::string path = folder.write("a.log", "old words");
    chmod(path.c_str(), 0666);
    ASSERT_TRUE(openEmptied(path));
    EXPECT_EQ(readFile(path), "");
    EXPECT_EQ(permissionsOf(path), 0600U);
}

TEST(OpenEmptiedTest, whoStillWritesGoesOnAtTheNewEnd) {
    const TemporaryFolder folder;
    const auto first = openEmptied(folder.path("a.log"));
    ASSERT_TRUE(first);
    ASSERT_EQ(write(first->get(), "first", 5), 5);
    const auto second = openEmptied(folder.path("a.log"));
    ASSERT_TRUE(second);
    EXPECT_EQ(readFile(folder.path("a.log")), "");
    ASSERT_EQ(write(first->get(), "1", 1), 1);
    ASSERT_EQ(write(second->get(), "2", 1), 1);
    EXPECT_EQ(readFile(folder.path("a.log")), "12") << "no hole where the old text was";
}

TEST(OpenEmptiedTest, whatCantBeAFileIsAnError) {
    const TemporaryFolder folder;
    folder.write("file", "");
    std::filesystem::create_directory(folder.path("folder"));
    mkfifo(folder.path("pipe").c_str(), 0600);
    std::filesystem::create_symlink("loop", folder.path("loop"));
    struct Row {
        std::string path;
        int error;
        const char *reason;
    };
    const Row rows[]{
        {folder.path("file/a.log"), ENOTDIR, "a file where a folder should be"},
        {folder.path("folder"), EISDIR, "a folder where the file should be"},
        {folder.path("pipe"), ENXIO, "a pipe without a reader is not waited for"},
        {"/dev/null", EINVAL, "a device"},
        {folder.path("loop"), ELOOP, "a link to itself"},
        {folder.path(std::string(300, 'x')), ENAMETOOLONG, "a name that no folder holds"},
    };
    for (const Row &row : rows) {
        const auto file = openEmptied(row.path);
        ASSERT_FALSE(file) << row.reason;
        EXPECT_EQ(file.error(), row.error) << row.reason;
    }
}

TEST(ErrorTextTest, theSubjectComesFirst) {
    EXPECT_EQ(errorText("/srv/shop", ENOENT), "/srv/shop: " + errorText(ENOENT));
    EXPECT_EQ(errorText("/srv/\xFF", EACCES), "/srv/\uFFFD: " + errorText(EACCES));
    EXPECT_NE(errorText(ENOENT), errorText(EACCES));
}

} // namespace
} // namespace tarnvale
