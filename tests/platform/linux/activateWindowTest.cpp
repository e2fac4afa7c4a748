#include "platform/linux/activateWindow.h"

#include "platform/linux/LinuxDesktop.h"
#include "platform/linux/VirtualDisplay.h"
#include "platform/linux/XWindow.h"
#include "platform/linux/withAncestors.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <unistd.h>

namespace tarnvale {
namespace {

using testing::ElementsAre;

class ActivateWindowTest : public testing::Test {
protected:
    static void SetUpTestSuite() { display = std::make_unique<VirtualDisplay>(); }
    static void TearDownTestSuite() { display.reset(); }

    void SetUp() override {
        if (!display->isRunning())
            GTEST_SKIP() << "Xvfb or openbox isn't installed";
    }

    static bool comesToFront(const XWindow &window) {
        return eventually([&] { return activeWindow(display->name()) == window.id(); });
    }

    /// A window that has the focus at the start.
    static std::unique_ptr<XWindow> inFront(Pid pid) {
        auto window = std::make_unique<XWindow>(display->name(), pid);
        static_cast<void>(activateWindowOf({pid}, display->name()));
        EXPECT_TRUE(comesToFront(*window));
        return window;
    }

    static std::unique_ptr<VirtualDisplay> display;
};

std::unique_ptr<VirtualDisplay> ActivateWindowTest::display;

TEST_F(ActivateWindowTest, theNearestProcessWithAWindowIsTaken) {
    const XWindow far(display->name(), 4001);
    const XWindow near(display->name(), 4002);
    const auto other = inFront(4003);
    EXPECT_TRUE(activateWindowOf({4004, 4002, 4001}, display->name()));
    EXPECT_TRUE(comesToFront(near));
    EXPECT_TRUE(activateWindowOf({4001, 4002}, display->name()));
    EXPECT_TRUE(comesToFront(far));
}

TEST_F(ActivateWindowTest, ofSeveralWindowsTheTopmostIsTaken) {
    const XWindow lower(display->name(), 4001);
    const XWindow upper(display->name(), 4001);
    const auto other = inFront(4003);
    EXPECT_TRUE(activateWindowOf({4001}, display->name()));
    EXPECT_TRUE(comesToFront(upper));
}

TEST_F(ActivateWindowTest, panelsAndTheDesktopAreNoApplications) {
    const XWindow dock(display->name(), 4001, {}, "_NET_WM_WINDOW_TYPE_DOCK");
    const XWindow background(display->name(), 4001, {}, "_NET_WM_WINDOW_TYPE_DESKTOP");
    EXPECT_FALSE(activateWindowOf({4001}, display->name()));
    const XWindow dialog(display->name(), 4001, {}, "_NET_WM_WINDOW_TYPE_DIALOG");
    EXPECT_TRUE(activateWindowOf({4001}, display->name()));
    EXPECT_TRUE(comesToFront(dialog));
}

TEST_F(ActivateWindowTest, windowsOfOtherMachinesAreNotMeant) {
    const XWindow remote(display->name(), 4001, "far.example");
    EXPECT_FALSE(activateWindowOf({4001}, display->name()));
    std::string own(256, '\0');
    gethostname(own.data(), own.size() - 1);
    const XWindow local(display->name(), 4001, own.c_str());
    EXPECT_TRUE(activateWindowOf({4001}, display->name()));
    EXPECT_TRUE(comesToFront(local));
}

TEST_F(ActivateWindowTest, withoutSuchAWindowNothingHappens) {
    const auto other = inFront(4003);
    EXPECT_FALSE(activateWindowOf({4001}, display->name()));
    EXPECT_FALSE(activateWindowOf({}, display->name()));
    EXPECT_EQ(activeWindow(display->name()), other->id());
}

TEST_F(ActivateWindowTest, theApplicationOfAServerIsFocused) {
    const XWindow window(display->name(), getpid());
    const auto other = inFront(4003);
    const TestProcess server(TestProcess::sleeper());
    LinuxDesktop desktop({QDBusConnection(QStringLiteral("none")), display->name(), "C"});
    EXPECT_TRUE(desktop.focusApplication("/usr/share/applications/editor.desktop", server.pid()));
    EXPECT_TRUE(comesToFront(window));
    EXPECT_FALSE(desktop.focusApplication("/usr/share/applications/editor.desktop", impossiblePid));
}

TEST(ActivateWindowWithoutServerTest, itIsNoError) {
    EXPECT_FALSE(activateWindowOf({4001}, ":59999"));
    EXPECT_FALSE(activateWindowOf({4001}, "no display at all"));
}

TEST(WithAncestorsTest, theChainEndsBeforeProcessOne) {
    const TestProcess child(TestProcess::sleeper());
    const std::vector<Pid> chain = withAncestors(child.pid());
    ASSERT_GE(chain.size(), 2u);
    EXPECT_EQ(chain[0], child.pid());
    EXPECT_EQ(chain[1], getpid());
    EXPECT_GT(chain.back(), 1);
    for (const Pid pid : {Pid{impossiblePid}, Pid{1}, Pid{0}, Pid{-5}})
        EXPECT_TRUE(withAncestors(pid).empty()) << pid;
    EXPECT_TRUE(withAncestors(child.pid(), "/nowhere").empty());
}

TEST(WithAncestorsTest, aCycleEnds) {
    const TemporaryFolder proc;
    const std::string rest = " 1 1 0 -1 4194560 1 0 0 0 1 1 0 0 20 0 1 0 5 4096 1 0 0 0 0 0 0 0 0 0 0 0\n";
    proc.write("11/stat", "11 (a) S 12" + rest);
    proc.write("12/stat", "12 (b) S 11" + rest);
    proc.write("13/stat", "13 (c");
    const std::vector<Pid> chain = withAncestors(11, proc.path());
    ASSERT_GE(chain.size(), 2u);
    EXPECT_EQ(chain[0], 11);
    EXPECT_EQ(chain[1], 12);
    EXPECT_TRUE(withAncestors(13, proc.path()).empty());
}

} // namespace
} // namespace tarnvale
