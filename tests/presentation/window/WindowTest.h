#pragma once

#include "commands/hotkey/FakeRegistrar.h"
#include "commands/hotkey/GlobalHotKey.h"
#include "presentation/shared/PresentationTest.h"
#include "presentation/window/MainViewController.h"
#include "support/TemporaryFolder.h"

#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

namespace tarnvale {

/// The state of the window over a store on a fake system. The user's home is an empty folder of the test's
/// own.
class WindowTest : public PresentationTest {
protected:
    WindowTest();
    ~WindowTest() override;

    /// Creates the store, waits for its first scan, and makes the window's state, which nobody looks at yet.
    void startView(const WindowActions &actions = {});
    /// The window is on the screen; every port has answered.
    void look();
    void lookAway();
    /// A user's folder of local sites with these in it.
    void addSites(std::initializer_list<const char *> names) const;

    /// The ids of the rows that are listed, from the top on.
    [[nodiscard]] std::vector<std::string> shown() const;
    /// The sidebar: "allPorts 3", without the number where it is 0.
    [[nodiscard]] std::vector<std::string> sidebar() const;

    TemporaryFolder home;
    std::unique_ptr<GlobalHotKey> hotKey;
    std::unique_ptr<PagePictures> pictures;
    std::unique_ptr<MainViewController> view;

private:
    QByteArray m_earlierHome;
};

} // namespace tarnvale
