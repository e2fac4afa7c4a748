#pragma once

#include "platform/linux/SettingsFile.h"
#include "presentation/tray/FakeWatcher.h"
#include "real/RealApplication.h"
#include "real/RealDesktop.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>

namespace tarnvale {

/// The whole application on a desktop that has a tray, with real keys and clicks.
class ApplicationTest : public testing::Test {
protected:
    explicit ApplicationTest(const std::string &screen = "800x600") : desktop(screen) {}

    /// The window stays away from what is about the panel.
    void SetUp() override {
        if (!desktop.problem().empty())
            GTEST_SKIP() << desktop.problem();
        ASSERT_TRUE(settings().setFlag("showWindowAtLaunch", false));
        ASSERT_TRUE(settings().setFlag("hasSeenWelcome", true));
        tray = std::make_unique<FakeWatcher>(desktop.bus.connect());
    }

    /// What there is to know when something isn't as it should be.
    [[nodiscard]] std::string state() const {
        return (application ? application->output() : std::string()) + desktop.tree().text();
    }

    /// Whether it came up.
    [[nodiscard]] bool startApplication(const std::vector<std::string> &words = {}) {
        application = std::make_unique<RealApplication>(desktop, words);
        return application->says("registered") && desktop.isPanelClosed();
    }

    /// A second start of the program, to its end.
    [[nodiscard]] ProgramRun startAgain(const std::vector<std::string> &words = {}) const {
        std::vector<std::string> all{TARNVALE_EXECUTABLE};
        all.insert(all.end(), words.begin(), words.end());
        return desktop.run(all);
    }

    [[nodiscard]] bool togglePanel() const { return startAgain({"--toggle-panel"}).status == 0; }

    /// The settings as the application finds them.
    [[nodiscard]] SettingsFile settings() const {
        return SettingsFile(desktop.folder.path("config") + "/tarnvale/tarnvale.conf");
    }

    RealDesktop desktop;
    std::unique_ptr<FakeWatcher> tray;
    std::unique_ptr<RealApplication> application;
};

} // namespace tarnvale
