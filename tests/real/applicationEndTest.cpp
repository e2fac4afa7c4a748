// How the application ends, and what doesn't end with it.

#include "real/ScreenReader.h"
#include "real/applicationTest.h"
#include "real/servers.h"
#include "store/storedJson.h"
#include "support/ManualClock.h"

#include <chrono>

namespace tarnvale {
namespace {

class ApplicationEndTest : public ApplicationTest, public testing::WithParamInterface<int> {};

TEST_P(ApplicationEndTest, aSignalEndsItInOrder) {
    constexpr std::chrono::seconds patienceOfSessions(2);
    ASSERT_TRUE(startApplication()) << state();
    ASSERT_TRUE(togglePanel());
    ASSERT_TRUE(desktop.isPanelOpen()) << state();
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(application->end(GetParam()), 0) << state();
    EXPECT_LT(std::chrono::steady_clock::now() - start, patienceOfSessions);
}

INSTANTIATE_TEST_SUITE_P(signals, ApplicationEndTest, testing::Values(SIGTERM, SIGINT, SIGHUP));

TEST_F(ApplicationEndTest, theMenuOfSettingsEndsItByKeys) {
    ASSERT_TRUE(startApplication()) << state();
    ASSERT_TRUE(togglePanel());
    ASSERT_TRUE(desktop.isPanelOpen()) << state();
    ScreenReader reader(desktop);
    ASSERT_TRUE(reader.goTo("Settings", "shift+Tab")) << reader.heard() << state();
    desktop.press({"space"});
    ASSERT_TRUE(reader.goTo("Quit Tarnvale\tCtrl+Q", "Up")) << reader.heard() << state();
    desktop.press({"Return"});
    EXPECT_EQ(application->waitForEnd(), 0) << state();
}

TEST_F(ApplicationEndTest, theKeyBesideQuitEndsIt) {
    ASSERT_TRUE(startApplication()) << state();
    ASSERT_TRUE(togglePanel());
    ASSERT_TRUE(desktop.isPanelOpen()) << state();
    desktop.press({"ctrl+q"});
    EXPECT_EQ(application->waitForEnd(), 0) << state();
}

TEST_F(ApplicationEndTest, whatItLaunchedLivesOn) {
    const ReservedPort port;
    const TemporaryFolder project;
    const std::string command = "/usr/bin/python3 -m http.server --bind 127.0.0.1 " + port.text();
    const Stack stack{.id = QUuid::createUuid(), .name = "shop", .commands = {{command, project.path()}}};
    ASSERT_TRUE(settings().setBytes("stacks", encodeStacks({stack})));
    ASSERT_TRUE(startApplication()) << state();
    ASSERT_TRUE(togglePanel());
    ASSERT_TRUE(desktop.shows([](const AccessibleTree &tree) {
        return tree.shown("push button", "Start shop");
    })) << state();
    desktop.click(*desktop.tree().shown("push button", "Start shop"));
    ASSERT_TRUE(waitFor([&] { return listenerCount(port.number()) > 0; }, std::chrono::seconds(20)))
        << state();
    const auto launched = scanPort(port.number());
    ASSERT_EQ(launched.size(), 1U);
    EXPECT_EQ(application->end(), 0) << state();
    EXPECT_TRUE(isAlive(launched[0].pid));
    EXPECT_TRUE(httpGet(port.number()));
    killMarked(launched[0].pid, port.text());
}

} // namespace
} // namespace tarnvale
