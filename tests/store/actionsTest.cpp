#include "store/StoreTest.h"

#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>

namespace tarnvale {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ActionsTest : public StoreTest {
protected:
    ActionsTest() {
        addServer(42, 3000, "node server.js", folder.path("shop"));
        addServer(43, 5432, "x", folder.path("shop"));
        world.launcher.folder = folder.path("logs");
    }

    TemporaryFolder folder;
};

TEST_F(ActionsTest, onlyAWebsiteOpensInTheBrowser) {
    start();
    store->openInBrowser(record(3000));
    store->openInBrowser(record(5432));
    EXPECT_THAT(world.desktop.opened, ElementsAre("http://localhost:3000"));
}

TEST_F(ActionsTest, theAddressIsCopiedAsFits) {
    start();
    store->copyURL(record(3000));
    store->copyURL(record(5432));
    store->copyPort(record(3000));
    store->copyPID(record(3000));
    EXPECT_THAT(world.clipboard.texts, ElementsAre("http://localhost:3000", "localhost:5432", "3000", "42"));
}

TEST_F(ActionsTest, theHostApplicationIsFocused) {
    start();
    auto port = record(3000);
    store->focusHostApp(port);
    EXPECT_THAT(world.desktop.focused, IsEmpty());
    port.hostApp = "/usr/share/applications/Some Editor.desktop";
    store->focusHostApp(port);
    EXPECT_EQ(error(), "Some Editor isn't running anymore.");
    world.desktop.running.insert(*port.hostApp);
    store->focusHostApp(port);
    EXPECT_THAT(world.desktop.focused, ElementsAre(*port.hostApp));
}

TEST_F(ActionsTest, theFolderIsShown) {
    start();
    auto port = record(3000);
    store->reveal(port);
    port.cwd.reset();
    store->reveal(port);
    EXPECT_THAT(world.desktop.revealed, ElementsAre(folder.path("shop")));
}

TEST_F(ActionsTest, onlyAPlainFileOpensAsALog) {
    start();
    const std::string log = folder.write("a.log", "x");
    store->openInConsole(log);
    store->openInConsole(folder.path());
    store->openInConsole(folder.path("missing.log"));
    store->openInConsole("/dev/null");
    EXPECT_THAT(world.desktop.logs, ElementsAre(log));
}

TEST_F(ActionsTest, theSourceOfTheLogFollowsTheRules) {
    start();
    auto port = record(3000);
    EXPECT_EQ(store->logSource(port), std::nullopt);

    const std::string above = folder.write("storage/logs/laravel.log", "x");
    EXPECT_EQ(store->logSource(port), LogSource::file(above)) << "of the folder above";
    const std::string own = folder.write("shop/storage/logs/laravel.log", "x");
    EXPECT_EQ(store->logSource(port), LogSource::file(own));

    const std::string launched = folder.write("logs/shop-node-server-js.log", "x");
    EXPECT_EQ(store->launchLog(port), launched);
    EXPECT_EQ(store->logSource(port), LogSource::file(launched));
    auto noArgs = port;
    noArgs.args.reset();
    EXPECT_EQ(store->logSource(noArgs), LogSource::file(own));

    port.container = "web · nginx";
    EXPECT_EQ(store->logSource(port), LogSource::file(launched)) << "without docker";
    world.tools.installed["docker"] = "/usr/bin/docker";
    EXPECT_EQ(store->logSource(port), LogSource::docker("/usr/bin/docker", "web"));
    port.container = " · nginx";
    EXPECT_EQ(store->logSource(port), LogSource::file(launched)) << "no name";
}

} // namespace
} // namespace tarnvale
