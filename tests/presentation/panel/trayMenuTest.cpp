#include "presentation/panel/trayMenu.h"

#include "presentation/panel/PanelFooterController.h"
#include "presentation/panel/PanelTest.h"

#include <gmock/gmock.h>

namespace tarnvale {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

std::vector<std::string> titles(const std::vector<MenuEntry> &entries) {
    std::vector<std::string> result;
    for (const MenuEntry &entry : entries)
        result.push_back(entry.isDivider() ? "-" : entry.title.toStdString());
    return result;
}

class TrayMenu : public PanelTest {
protected:
    TrayMenu() {
        actions.quit = [this] { done.emplace_back("quit"); };
    }

    [[nodiscard]] std::vector<MenuEntry> menu() {
        return trayMenu(*store, actions, [this] { done.emplace_back("panel"); });
    }

    PanelActions actions;
    std::vector<std::string> done;
};

TEST_F(TrayMenu, ofAnEmptyMachine) {
    start();
    EXPECT_THAT(titles(menu()),
                ElementsAre("Open Panel", "-", "No dev servers running", "-", "Quit Tarnvale"));
    EXPECT_FALSE(menu()[2].isEnabled);
}

TEST_F(TrayMenu, namesTheServersWithWhatCanBeDone) {
    addServer(42, 3000);
    addPostgres();
    start();
    const auto entries = menu();
    EXPECT_THAT(titles(entries), ElementsAre("Open Panel", "-", "3000 · shop", testing::StartsWith("5432 · "),
                                             "-", "Quit Tarnvale"));
    EXPECT_THAT(titles(entries[2].children), ElementsAre("Open in Browser", "Copy URL", "-", "Kill process"));
    EXPECT_THAT(titles(entries[3].children), ElementsAre("Copy Address", "-", "Kill process"));
}

TEST_F(TrayMenu, actsOnAServer) {
    addServer(42, 3000);
    start();
    const auto children = menu()[2].children;
    children[0].act();
    children[1].act();
    children[3].act();
    pass(1s);
    EXPECT_THAT(world.desktop.opened, ElementsAre("http://localhost:3000"));
    EXPECT_THAT(world.clipboard.texts, ElementsAre("http://localhost:3000"));
    EXPECT_THAT(stopped(), ElementsAre(42));
}

TEST_F(TrayMenu, opensThePanelAndTheWindowAndQuits) {
    actions.openWindow = [this] { done.emplace_back("window"); };
    start();
    const auto entries = menu();
    EXPECT_THAT(titles(entries), ElementsAre("Open Panel", "-", "No dev servers running", "-",
                                             "Open Tarnvale Window", "Quit Tarnvale"));
    for (const std::size_t row : {std::size_t(0), std::size_t(4), std::size_t(5)})
        entries[row].act();
    EXPECT_THAT(done, ElementsAre("panel", "window", "quit"));
}

TEST_F(TrayMenu, ofManyServersNamesTheFirstEight) {
    for (int number = 0; number < 9; ++number)
        addServer(42 + number, 3000 + number);
    start();
    const auto entries = menu();
    ASSERT_EQ(entries.size(), 2u + 8u + 1u + 2u);
    EXPECT_EQ(entries[9].title, QStringLiteral("3007 · shop"));
    EXPECT_EQ(entries[10].title, QStringLiteral("More…"));
    entries[10].act();
    EXPECT_THAT(done, ElementsAre("panel"));
    world.machine.end(50);
    scan();
    EXPECT_EQ(menu().size(), 2u + 8u + 2u) << "eight need no more";
}

TEST_F(TrayMenu, keepsEndlessNamesShort) {
    addServer(42, 3000, "node server.js", "/home/me/" + std::string(5000, 'x'));
    start();
    EXPECT_LT(menu()[2].title.size(), 80);
}

} // namespace
} // namespace tarnvale
