#include "commands/desktopOpener.h"

#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <unistd.h>

namespace tarnvale {
namespace {

class DesktopOpenerTest : public testing::Test {
protected:
    ~DesktopOpenerTest() override { setenv("PATH", m_before.c_str(), 1); }

    static std::optional<std::string> openerIn(const std::string &path) {
        setenv("PATH", path.c_str(), 1);
        return desktopOpener();
    }

    TemporaryFolder m_folder;

private:
    std::string m_before = std::getenv("PATH");
};

TEST_F(DesktopOpenerTest, theFirstInThePathIsTaken) {
    const std::string first = m_folder.writeScript("a/xdg-open", "exit 0");
    const std::string second = m_folder.writeScript("b/xdg-open", "exit 0");
    EXPECT_EQ(openerIn(m_folder.path("a") + ":" + m_folder.path("b")), first);
    EXPECT_EQ(openerIn(m_folder.path("none") + ":" + m_folder.path("b") + ":" + m_folder.path("a")), second);
}

TEST_F(DesktopOpenerTest, whatCannotBeExecutedIsPassedOver) {
    m_folder.write("a/xdg-open", "no");
    EXPECT_EQ(openerIn(m_folder.path("a")), std::nullopt);
    EXPECT_EQ(openerIn(""), std::nullopt);
}

TEST_F(DesktopOpenerTest, foldersRelativeToTheCurrentOneAreNotSearched) {
    const std::string opener = m_folder.writeScript("xdg-open", "exit 0");
    const std::string before = std::getenv("PWD") == nullptr ? "/" : std::getenv("PWD");
    ASSERT_EQ(chdir(m_folder.path().c_str()), 0);
    EXPECT_EQ(openerIn(".::"), std::nullopt);
    EXPECT_EQ(openerIn("." + std::string(":") + m_folder.path()), opener);
    ASSERT_EQ(chdir(before.c_str()), 0);
}

} // namespace
} // namespace tarnvale
