#include "platform/linux/AutostartLoginItem.h"

#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

namespace tarnvale {
namespace {

namespace fs = std::filesystem;
using Status = LoginItem::Status;

class AutostartLoginItemTest : public testing::Test {
protected:
    static constexpr std::string_view name = "dev.tarnvale.Tarnvale.desktop";

    [[nodiscard]] AutostartLoginItem item() const {
        return AutostartLoginItem({QString::fromStdString(m_folder.path("home/autostart")),
                                   {QString::fromStdString(m_folder.path("first")),
                                    QString::fromStdString(m_folder.path("second"))},
                                   "/opt/my apps/tarnvale"});
    }
    std::string writeIn(const std::string &folder, const std::string &lines) const {
        return m_folder.write(folder + "/" + std::string(name),
                              "[Desktop Entry]\nType=Application\n" + lines);
    }
    [[nodiscard]] std::string userFile() const {
        return m_folder.path("home/autostart/" + std::string(name));
    }

    TemporaryFolder m_folder;
};

TEST_F(AutostartLoginItemTest, enablingWritesAnEntryAndDisablingRemovesIt) {
    AutostartLoginItem loginItem = item();
    EXPECT_EQ(loginItem.status(), Status::other);
    ASSERT_TRUE(loginItem.enable());
    EXPECT_EQ(loginItem.status(), Status::enabled);
    EXPECT_EQ(readFile(userFile()), "[Desktop Entry]\nType=Application\nName=Tarnvale\n"
                                    "Icon=dev.tarnvale.Tarnvale\nExec=\"/opt/my apps/tarnvale\"\n"
                                    "TryExec=/opt/my apps/tarnvale\nX-GNOME-Autostart-enabled=true\n");
    ASSERT_TRUE(loginItem.disable());
    EXPECT_EQ(loginItem.status(), Status::other);
    EXPECT_FALSE(fs::exists(userFile()));
    EXPECT_TRUE(loginItem.disable()) << "there is nothing left to do";
    loginItem.openSystemSettings();
}

TEST_F(AutostartLoginItemTest, theStatusIsWhatTheFileSays) {
    struct Row {
        const char *lines;
        Status status;
        const char *reason;
    };
    const Row rows[]{
        {"Exec=t\n", Status::enabled, "a plain entry"},
        {"Exec=t\nHidden=false\nX-GNOME-Autostart-enabled=true\n", Status::enabled, "both say yes"},
        {"Exec=t\nHidden=true\n", Status::other, "as good as deleted"},
        {"Exec=t\nX-GNOME-Autostart-enabled=false\n", Status::other, "switched off by the desktop"},
        {"Hidden=true\n", Status::other, "hidden and nothing else"},
        {"", Status::other, "nothing to start"},
        {"Exec=t\n[Other]\nHidden=true\n", Status::enabled, "hidden in another group"},
    };
    for (const Row &row : rows) {
        writeIn("home/autostart", row.lines);
        EXPECT_EQ(item().status(), row.status) << row.reason;
        AutostartLoginItem loginItem = item();
        ASSERT_TRUE(loginItem.enable());
        EXPECT_EQ(loginItem.status(), Status::enabled) << row.reason;
    }
}

TEST_F(AutostartLoginItemTest, anEmptyOrOddFileStartsNothing) {
    for (const std::string_view content : {"", "\xff\xfe\x01", "[Desktop Entry", "Exec=t\n"}) {
        m_folder.write("home/autostart/" + std::string(name), content);
        EXPECT_EQ(item().status(), Status::other) << content;
    }
    fs::remove(userFile());
    fs::create_directory(userFile());
    EXPECT_EQ(item().status(), Status::other);
    EXPECT_FALSE(item().enable());
}

TEST_F(AutostartLoginItemTest, theUsersEntryStandsInForTheSystems) {
    const std::string system = writeIn("second", "Exec=t\n");
    AutostartLoginItem loginItem = item();
    EXPECT_EQ(loginItem.status(), Status::enabled);
    ASSERT_TRUE(loginItem.disable());
    EXPECT_EQ(loginItem.status(), Status::other);
    EXPECT_NE(readFile(userFile()).find("\nHidden=true\n"), std::string::npos);
    EXPECT_TRUE(fs::exists(system));
    ASSERT_TRUE(loginItem.enable());
    EXPECT_EQ(loginItem.status(), Status::enabled);
}

TEST_F(AutostartLoginItemTest, theFirstSystemFolderCounts) {
    writeIn("first", "Exec=t\nHidden=true\n");
    writeIn("second", "Exec=t\n");
    EXPECT_EQ(item().status(), Status::other);
    ASSERT_TRUE(item().disable());
    EXPECT_FALSE(fs::exists(userFile())) << "there is nothing to hide";
}

TEST_F(AutostartLoginItemTest, aLinkIsWrittenThroughAndRemovedItself) {
    const std::string target = m_folder.write("dotfiles/entry", "");
    fs::create_directories(m_folder.path("home/autostart"));
    fs::create_symlink(target, userFile());
    ASSERT_TRUE(item().enable());
    EXPECT_TRUE(fs::is_symlink(userFile()));
    EXPECT_NE(readFile(target), "");
    ASSERT_TRUE(item().disable());
    EXPECT_FALSE(fs::is_symlink(userFile()));
    EXPECT_TRUE(fs::exists(target));
}

TEST_F(AutostartLoginItemTest, aFailureIsToldInWords) {
    m_folder.write("home/autostart", "a file in the place of the folder");
    const auto enabled = item().enable();
    ASSERT_FALSE(enabled);
    EXPECT_NE(enabled.error(), "");
    EXPECT_EQ(item().status(), Status::other);
}

TEST_F(AutostartLoginItemTest, aReadOnlyFolderRefusesBoth) {
    ASSERT_TRUE(item().enable());
    chmod(m_folder.path("home/autostart").c_str(), 0555);
    chmod(m_folder.path().c_str(), 0755);
    chmod(userFile().c_str(), 0644);
    const bool isRoot = geteuid() == 0;
    if (isRoot) {
        ASSERT_EQ(seteuid(65534), 0);
    }
    const auto disabled = item().disable();
    const auto enabled = item().enable();
    const Status status = item().status();
    if (isRoot) {
        ASSERT_EQ(seteuid(0), 0);
    }
    chmod(m_folder.path("home/autostart").c_str(), 0755);
    ASSERT_FALSE(disabled);
    EXPECT_EQ(disabled.error(), "Permission denied");
    // An owner may replace the file only where the folder lets him.
    ASSERT_FALSE(enabled);
    EXPECT_EQ(enabled.error(), "Permission denied");
    EXPECT_EQ(status, Status::enabled);
}

TEST_F(AutostartLoginItemTest, thePlacesFollowTheEnvironment) {
    const AutostartLoginItem::Places places = AutostartLoginItem::standardPlaces();
    EXPECT_TRUE(places.userFolder.endsWith(QStringLiteral("/autostart")));
    EXPECT_FALSE(places.systemFolders.contains(places.userFolder));
    EXPECT_EQ(places.executable, fs::read_symlink("/proc/self/exe").string());
    setenv("APPIMAGE", "/home/me/Tarnvale.AppImage", 1);
    EXPECT_EQ(AutostartLoginItem::standardPlaces().executable, "/home/me/Tarnvale.AppImage");
    setenv("APPIMAGE", "relative", 1);
    EXPECT_EQ(AutostartLoginItem::standardPlaces().executable, places.executable);
    unsetenv("APPIMAGE");
}

} // namespace
} // namespace tarnvale
