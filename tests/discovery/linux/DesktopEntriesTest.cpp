#include "discovery/linux/DesktopEntries.h"

#include "support/FakeProc.h"

#include <fcntl.h>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tarnvale {
namespace {

using testing::ElementsAre;

std::string entry(const std::string &exec, const std::string &more = "") {
    return "[Desktop Entry]\nType=Application\nName=Editor\nExec=" + exec + "\n" + more;
}

TEST(ApplicationFoldersTest, theUsersOwnComeFirst) {
    setenv("XDG_DATA_HOME", "/home/dev/data", 1);
    setenv("XDG_DATA_DIRS", "/a:relative::/usr/share:/a", 1);
    EXPECT_THAT(applicationFolders(),
                ElementsAre("/home/dev/data/applications", "/a/applications", "/usr/share/applications",
                            "/home/dev/data/flatpak/exports/share/applications",
                            "/var/lib/flatpak/exports/share/applications",
                            "/var/lib/snapd/desktop/applications"));
    setenv("XDG_DATA_HOME", "", 1);
    unsetenv("XDG_DATA_DIRS");
    setenv("HOME", "/home/dev", 1);
    const auto folders = applicationFolders();
    EXPECT_EQ(folders.at(0), "/home/dev/.local/share/applications");
    EXPECT_EQ(folders.at(1), "/usr/local/share/applications");
    EXPECT_EQ(folders.at(2), "/usr/share/applications");
}

/// Desktop files and programs on disk: `own` is searched before `shared`.
class DesktopEntriesTest : public testing::Test {
protected:
    DesktopEntriesTest() {
        std::filesystem::create_directories(own);
        std::filesystem::create_directories(shared);
    }

    void addProgram(const std::string &path) {
        disk.write(path, "#!/bin/sh\n");
        std::filesystem::permissions(disk.folder() + "/" + path, std::filesystem::perms::owner_all);
    }

    /// As the next scan would see it; a folder's time may be as coarse as a clock tick.
    void beginScan() {
        timespec times[2]{{.tv_sec = 0, .tv_nsec = UTIME_OMIT}, {.tv_sec = ++m_time, .tv_nsec = 0}};
        ASSERT_EQ(utimensat(AT_FDCWD, own.c_str(), times, 0), 0);
        entries.beginScan();
    }

    FakeProc disk;
    std::string root = std::filesystem::canonical(disk.folder());
    std::string own = disk.folder() + "/own";
    std::string shared = disk.folder() + "/shared";
    DesktopEntries entries{{own, shared, disk.folder() + "/missing"}};

private:
    long m_time = 1'700'000'000;
};

TEST_F(DesktopEntriesTest, anIdIsFoundInTheFirstFolderThatHasIt) {
    disk.write("own/editor.desktop", entry("editor"));
    disk.write("shared/editor.desktop", entry("editor"));
    disk.write("shared/org.x.Other.desktop", entry("other"));
    EXPECT_EQ(entries.findById("editor"), own + "/editor.desktop");
    EXPECT_EQ(entries.findById("org.x.Other"), shared + "/org.x.Other.desktop");
    for (const char *id : {"", "none", "../shared/editor", "/editor", "editor.desktop"})
        EXPECT_EQ(entries.findById(id), std::nullopt) << id;
}

TEST_F(DesktopEntriesTest, anExecutableIsFoundThroughItsLinks) {
    addProgram("opt/editor-2.1/editor");
    std::filesystem::create_symlink(root + "/opt/editor-2.1", disk.folder() + "/opt/current");
    disk.write("shared/editor.desktop", entry(disk.folder() + "/opt/current/editor %F"));
    EXPECT_EQ(entries.findByExecutable(root + "/opt/editor-2.1/editor"), shared + "/editor.desktop");
    EXPECT_EQ(entries.findByExecutable(root + "/opt/editor-2.1/other"), std::nullopt);
    EXPECT_EQ(entries.findByExecutable(""), std::nullopt);
}

TEST_F(DesktopEntriesTest, aBareNameIsSearchedOnThePath) {
    addProgram("bin/editor");
    setenv("PATH", (disk.folder() + "/none:" + disk.folder() + "/bin").c_str(), 1);
    disk.write("shared/editor.desktop", entry("editor"));
    EXPECT_EQ(entries.findByExecutable(root + "/bin/editor"), shared + "/editor.desktop");
}

TEST_F(DesktopEntriesTest, shellsAndRuntimesAreNoApplications) {
    for (const char *program : {"sh", "bash", "python3.11", "node", "java", "perl", "flatpak", "busybox"}) {
        addProgram(std::string("bin/") + program);
        disk.write(std::string("shared/") + program + ".desktop", entry(disk.folder() + "/bin/" + program));
    }
    for (const char *program : {"sh", "bash", "python3.11", "node", "java", "perl", "flatpak", "busybox"})
        EXPECT_EQ(entries.findByExecutable(root + "/bin/" + program), std::nullopt) << program;
}

TEST_F(DesktopEntriesTest, anEntryThatLinksToAShellHasNoProgramOfItsOwn) {
    addProgram("bin/bash");
    std::filesystem::create_symlink(root + "/bin/bash", disk.folder() + "/bin/my-terminal");
    disk.write("shared/terminal.desktop", entry(disk.folder() + "/bin/my-terminal"));
    EXPECT_EQ(entries.findByExecutable(root + "/bin/bash"), std::nullopt);
}

TEST_F(DesktopEntriesTest, hiddenEntriesDoNotCountAndUnlistedOnesComeLast) {
    addProgram("bin/editor");
    const std::string exec = disk.folder() + "/bin/editor";
    disk.write("shared/a-hidden.desktop", entry(exec, "Hidden=true\n"));
    disk.write("shared/b-unlisted.desktop", entry(exec, "NoDisplay=true\n"));
    EXPECT_EQ(entries.findByExecutable(root + "/bin/editor"), shared + "/b-unlisted.desktop");
    disk.write("shared/c-listed.desktop", entry(exec));
    beginScan();
    EXPECT_EQ(entries.findByExecutable(root + "/bin/editor"), shared + "/c-listed.desktop");
}

TEST_F(DesktopEntriesTest, theUsersOwnEntryWins) {
    addProgram("bin/editor");
    disk.write("shared/editor.desktop", entry(disk.folder() + "/bin/editor"));
    disk.write("own/my-editor.desktop", entry(disk.folder() + "/bin/editor"));
    EXPECT_EQ(entries.findByExecutable(root + "/bin/editor"), own + "/my-editor.desktop");
}

TEST_F(DesktopEntriesTest, aChangedFolderIsReadAgainInTheNextScan) {
    addProgram("bin/editor");
    EXPECT_EQ(entries.findById("editor"), std::nullopt);
    EXPECT_EQ(entries.findByExecutable(root + "/bin/editor"), std::nullopt);
    disk.write("own/editor.desktop", entry(disk.folder() + "/bin/editor"));
    EXPECT_EQ(entries.findById("editor"), std::nullopt) << "an answer holds for the whole scan";
    beginScan();
    EXPECT_EQ(entries.findById("editor"), own + "/editor.desktop");
    EXPECT_EQ(entries.findByExecutable(root + "/bin/editor"), own + "/editor.desktop");
    std::filesystem::remove(own + "/editor.desktop");
    beginScan();
    EXPECT_EQ(entries.findById("editor"), std::nullopt);
    EXPECT_EQ(entries.findByExecutable(root + "/bin/editor"), std::nullopt);
}

TEST_F(DesktopEntriesTest, odditiesInTheFolderAreSkipped) {
    addProgram("bin/editor");
    std::filesystem::create_directory(shared + "/folder.desktop");
    std::filesystem::create_symlink("/nonexistent", shared + "/dangling.desktop");
    disk.write("shared/empty.desktop", "");
    disk.write("shared/gone.desktop", entry("/nonexistent/program"));
    disk.write("shared/no-suffix", entry(disk.folder() + "/bin/editor"));
    EXPECT_EQ(entries.findByExecutable(root + "/bin/editor"), std::nullopt);
    EXPECT_EQ(entries.findByExecutable("/nonexistent/program"), std::nullopt);
}

} // namespace
} // namespace tarnvale
