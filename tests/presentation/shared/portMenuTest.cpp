// The one menu of a port: which entries it has, in which order, and what they do.

#include "presentation/shared/portMenu.h"
#include "presentation/shared/PresentationTest.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <filesystem>

namespace tarnvale {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

/// "-" for a divider, "(title)" for what is disabled.
std::vector<std::string> titles(const std::vector<MenuEntry> &entries) {
    std::vector<std::string> result;
    for (const MenuEntry &entry : entries) {
        const std::string title = entry.title.toStdString();
        result.push_back(entry.isDivider() ? "-" : entry.isEnabled ? title : "(" + title + ")");
    }
    return result;
}

class PortMenu : public PresentationTest {
protected:
    void SetUp() override {
        addServer(42, 3000);
        start();
        port = record(3000);
    }

    [[nodiscard]] std::vector<MenuEntry> menu() {
        return portMenu(*store, world.desktop, port, isWeb, files);
    }

    void choose(const char *title) {
        for (const MenuEntry &entry : menu())
            if (entry.title == QLatin1String(title)) {
                ASSERT_TRUE(entry.act) << title;
                entry.act();
                quiesce();
                return;
            }
        FAIL() << "there is no " << title;
    }

    void startTunnel() {
        world.tools.installed["cloudflared"] = "/usr/bin/cloudflared";
        store->share(port);
        quiesce();
        ASSERT_EQ(world.tools.started.size(), 1u);
    }

    ListeningPort port;
    PortFiles files;
    bool isWeb = true;
};

TEST_F(PortMenu, ofAWebsite) {
    EXPECT_THAT(titles(menu()), ElementsAre("Open in Browser", "Copy URL", "Copy Port", "Copy PID", "-",
                                            "Restart", "Restart to Capture Logs", "Notify When Port Stops",
                                            "-", "(Share Publicly (install cloudflared))", "-",
                                            "Reveal Folder", "Save shop as Stack"));
}

TEST_F(PortMenu, ofWhatIsNoWebsite) {
    isWeb = false;
    EXPECT_THAT(titles(menu()), ElementsAre("Copy Address", "Copy Port", "Copy PID", "-", "Restart",
                                            "Restart to Capture Logs", "Notify When Port Stops", "-",
                                            "Reveal Folder", "Save shop as Stack"));
}

TEST_F(PortMenu, withEverything) {
    port.hostApp = "/usr/share/applications/Some Editor.desktop";
    files = {.launchLog = "/logs/shop.log",
             .projectLog = ProjectLog{"/home/me/shop/storage/logs/laravel.log", "storage/logs/laravel.log"},
             .sites = {{"blog.test", "http://blog.test"}, {"shop.test", "https://shop.test"}},
             .tunnelTool = TunnelTool::ngrok};
    EXPECT_THAT(titles(menu()),
                ElementsAre("Open in Browser", "Copy URL", "Copy Port", "Copy PID", "Focus Some Editor", "-",
                            "Restart", "Show Logs", "Open storage/logs/laravel.log", "Notify When Port Stops",
                            "-", "Share Publicly via ngrok", "Sites (2)", "-", "Reveal Folder",
                            "Save shop as Stack"));
}

TEST_F(PortMenu, ofAProcessWithoutFolderOrCommandLine) {
    port.cwd.reset();
    port.args.reset();
    EXPECT_THAT(titles(menu()),
                ElementsAre("Open in Browser", "Copy URL", "Copy Port", "Copy PID", "-",
                            "Notify When Port Stops", "-", "(Share Publicly (install cloudflared))", "-",
                            "(Reveal Folder)"));
}

TEST_F(PortMenu, ofAContainer) {
    port.container = "web · nginx:1.27";
    EXPECT_THAT(titles(menu()), testing::Contains("Restart Container"));
    EXPECT_THAT(titles(menu()), Not(testing::Contains("Restart to Capture Logs")));
    port.service = "web.service";
    EXPECT_THAT(titles(menu()), testing::Contains("Restart Container")) << "a container before a service";
}

TEST_F(PortMenu, ofAService) {
    port.service = "shop.service";
    const auto all = titles(menu());
    EXPECT_THAT(all, testing::Contains("Restart Service"));
    EXPECT_THAT(all, Not(testing::Contains("Restart to Capture Logs")));
    EXPECT_THAT(all, Not(testing::Contains("Save shop as Stack")));
}

TEST_F(PortMenu, ofASystemProcess) {
    port.cwd = "/";
    const auto all = titles(menu());
    EXPECT_THAT(all, Not(testing::Contains("Restart"))) << "no project";
    EXPECT_THAT(all, testing::Contains("Reveal Folder"));
}

TEST_F(PortMenu, ofAPortThatIsShared) {
    startTunnel();
    EXPECT_THAT(titles(menu()), testing::IsSupersetOf({"(Starting cloudflared…)", "Stop Sharing"}));
    EXPECT_THAT(titles(menu()), Not(testing::Contains("Copy Public URL")));
    isWeb = false;
    EXPECT_THAT(titles(menu()), testing::Contains("Stop Sharing")) << "whatever the port has become";
    world.tools.started.front()->write("https://a-b.trycloudflare.com\n");
    quiesce();
    EXPECT_THAT(titles(menu()), testing::IsSupersetOf({"Copy Public URL", "Stop Sharing"}));
    choose("Copy Public URL");
    EXPECT_THAT(world.clipboard.texts, testing::Contains("https://a-b.trycloudflare.com"));
    choose("Stop Sharing");
    EXPECT_TRUE(world.tools.started.front()->isTerminated);
}

TEST_F(PortMenu, sharesAPort) {
    world.tools.installed["cloudflared"] = "/usr/bin/cloudflared";
    files.tunnelTool = TunnelTool::cloudflared;
    choose("Share Publicly via cloudflared");
    EXPECT_EQ(world.tools.started.size(), 1u);
}

TEST_F(PortMenu, copies) {
    choose("Copy URL");
    choose("Copy Port");
    choose("Copy PID");
    isWeb = false;
    choose("Copy Address");
    EXPECT_THAT(world.clipboard.texts, ElementsAre("http://localhost:3000", "3000", "42", "localhost:3000"));
}

TEST_F(PortMenu, opensAndReveals) {
    port.hostApp = "/usr/share/applications/Some Editor.desktop";
    world.desktop.running.insert(*port.hostApp);
    choose("Open in Browser");
    choose("Focus Some Editor");
    choose("Reveal Folder");
    EXPECT_THAT(world.desktop.opened, ElementsAre("http://localhost:3000"));
    EXPECT_THAT(world.desktop.focused, ElementsAre("/usr/share/applications/Some Editor.desktop"));
    EXPECT_THAT(world.desktop.revealed, ElementsAre("/home/me/shop"));
}

TEST_F(PortMenu, opensLogs) {
    const TemporaryFolder folder;
    const std::string log = folder.write("shop.log", "hello\n");
    files.launchLog = log;
    files.projectLog = ProjectLog{log, "log/development.log"};
    choose("Show Logs");
    choose("Open log/development.log");
    EXPECT_THAT(world.desktop.logs, ElementsAre(log, log));
}

TEST_F(PortMenu, restartsInBothWays) {
    choose("Restart");
    pass(5s);
    EXPECT_THAT(stopped(), ElementsAre(42));
    EXPECT_THAT(world.launcher.commands(), ElementsAre("node server.js"));
}

TEST_F(PortMenu, restartsToCaptureLogs) {
    choose("Restart to Capture Logs");
    pass(5s);
    EXPECT_THAT(world.launcher.commands(), ElementsAre("node server.js"));
}

TEST_F(PortMenu, watchesAndForgets) {
    choose("Notify When Port Stops");
    EXPECT_TRUE(store->watchedPorts().contains(3000));
    world.machine.end(42);
    scan();
    choose("Stop Watching Port");
    EXPECT_THAT(store->watchedPorts(), IsEmpty());
}

TEST_F(PortMenu, savesAStack) {
    choose("Save shop as Stack");
    ASSERT_EQ(store->stacks().size(), 1u);
    EXPECT_EQ(store->stacks().front().name, "shop");
}

TEST_F(PortMenu, opensASite) {
    files.sites = {{"blog.test", "http://blog.test"}, {"shop.test", "https://shop.test"}};
    for (const MenuEntry &entry : menu())
        if (entry.title == QStringLiteral("Sites (2)")) {
            EXPECT_THAT(titles(entry.children), ElementsAre("blog.test", "shop.test"));
            entry.children.back().act();
        }
    EXPECT_THAT(world.desktop.opened, ElementsAre("https://shop.test"));
}

TEST_F(PortMenu, showsOddNamesAsPlainText) {
    port.cwd = "/home/me/sh\xFFop\n2";
    for (const MenuEntry &entry : menu()) {
        EXPECT_TRUE(entry.title.isValidUtf16());
        EXPECT_FALSE(entry.title.contains(QLatin1Char('\n')));
    }
}

class PortFilesTest : public PortMenu {
protected:
    void SetUp() override {
        world.launcher.folder = folder.path();
        addServer(42, 3000, "node server.js", folder.path());
        start();
        port = record(3000);
    }

    [[nodiscard]] PortFiles read() { return readPortFiles(port, store->launchLog(port), world.tools); }

    const TemporaryFolder folder;
};

TEST_F(PortFilesTest, areNoneWhereNothingIs) {
    EXPECT_EQ(read(), PortFiles());
}

TEST_F(PortFilesTest, tellOfALaunchLog) {
    const std::string path = *store->launchLog(port);
    folder.write(path.substr(folder.path().size() + 1), "hello\n");
    EXPECT_EQ(read().launchLog, store->launchLog(port));
    EXPECT_EQ(readPortFiles(port, std::nullopt, world.tools).launchLog, std::nullopt);
}

TEST_F(PortFilesTest, tellOfAProjectLog) {
    folder.write("storage/logs/laravel.log", "hello\n");
    ASSERT_TRUE(read().projectLog.has_value());
    EXPECT_EQ(read().projectLog->name, "storage/logs/laravel.log");
    port.cwd.reset();
    EXPECT_EQ(read().projectLog, std::nullopt);
}

TEST_F(PortFilesTest, tellOfTheSitesBehindNginxOnTheWebsPort) {
    std::filesystem::create_directories(folder.path("Sites/shop"));
    folder.write(".valet/config.json", R"({"paths": [")" + folder.path("Sites") + R"("], "tld": "test"})");
    const QByteArray home = qgetenv("HOME");
    qputenv("HOME", QByteArray::fromStdString(folder.path()));
    port.command = "nginx";
    port.port = 443;
    EXPECT_THAT(read().sites, testing::SizeIs(1));
    port.port = 8080;
    EXPECT_THAT(read().sites, IsEmpty());
    qputenv("HOME", home);
}

TEST_F(PortFilesTest, tellOfTheToolThatSharingWouldRun) {
    world.tools.installed["ngrok"] = "/usr/bin/ngrok";
    EXPECT_EQ(read().tunnelTool, TunnelTool::ngrok);
    world.tools.installed["cloudflared"] = "/usr/bin/cloudflared";
    EXPECT_EQ(read().tunnelTool, TunnelTool::cloudflared);
}

} // namespace
} // namespace tarnvale
