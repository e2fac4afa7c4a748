#include "presentation/palette/paletteItems.h"

#include <QCoreApplication>
#include <QTranslator>

#include <gmock/gmock.h>

#include <string>

namespace tarnvale {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

/// Actions that write down what was done.
std::shared_ptr<const PaletteActions> noting(std::vector<std::string> &done) {
    const auto port = [&done](const char *what) {
        return [&done, what](const ListeningPort &record) {
            done.push_back(what + (" " + std::to_string(record.port)));
        };
    };
    PaletteActions actions;
    actions.open = port("open");
    actions.show = port("show");
    actions.copy = port("copy");
    actions.restart = port("restart");
    actions.stop = port("stop");
    actions.startStack = [&done](const Stack &stack) { done.push_back("start " + stack.name); };
    actions.navigate = [&done](SidebarItem page) { done.push_back("go " + key(page).toStdString()); };
    actions.refresh = [&done] { done.emplace_back("refresh"); };
    actions.flipShowAll = [&done] { done.emplace_back("flip"); };
    return std::make_shared<const PaletteActions>(std::move(actions));
}

class PaletteItems : public testing::Test {
protected:
    /// The list's items as "id | title | subtitle | symbol | tint", destructive ones with a "!" behind.
    [[nodiscard]] std::vector<std::string> list() {
        std::vector<std::string> lines;
        for (const PaletteItem &item : items())
            lines.push_back((item.id + " | " + item.title + " | " + item.subtitle + " | " + item.symbol +
                             " | " + item.tint + (item.isDestructive ? " !" : ""))
                                .toStdString());
        return lines;
    }
    /// The titles of the items of the only row.
    [[nodiscard]] std::vector<std::string> titlesOf(const ListeningPort &port, bool isWeb = false) {
        contents.rows = {{port, {}, isWeb}};
        std::vector<std::string> titles;
        for (const PaletteItem &item : items())
            titles.push_back(item.title.toStdString());
        titles.resize(titles.size() - 7);
        return titles;
    }
    [[nodiscard]] std::vector<PaletteItem> items() { return paletteItems(contents, noting(done)); }

    PaletteContents contents;
    std::vector<std::string> done;
};

const ListeningPort shop{
    .pid = 42, .command = "node", .port = 3000, .cwd = "/home/me/shop", .args = "node server.js"};
const ListeningPort plain{.pid = 43, .command = "sshd", .port = 22};

TEST_F(PaletteItems, aWebRowOffersFiveActions) {
    contents.rows = {{shop, {}, true}};
    std::vector<std::string> lines = list();
    lines.resize(5);
    EXPECT_THAT(lines, ElementsAre("open-42:3000 | Open shop | localhost:3000 | safari | blue",
                                   "show-42:3000 | Show shop | Port 3000 | sidebar.right | secondary",
                                   "copy-42:3000 | Copy URL of shop | Port 3000 | doc.on.doc | secondary",
                                   "restart-42:3000 | Restart shop | Port 3000 | arrow.clockwise | orange",
                                   "kill-42:3000 | Kill shop | Port 3000 | xmark.octagon | red !"));
}

TEST_F(PaletteItems, whatIsNoWebServerIsNeitherOpenedNorHasAUrl) {
    EXPECT_THAT(titlesOf(plain), ElementsAre("Show sshd", "Copy Address of sshd", "Kill sshd"));
}

TEST_F(PaletteItems, aProcessIsRestartedOnlyWithAProjectAndItsCommandLine) {
    ListeningPort port = shop;
    port.args.reset();
    EXPECT_THAT(titlesOf(port), ElementsAre("Show shop", "Copy Address of shop", "Kill shop"))
        << "no command line";
    port = shop;
    port.cwd = "/";
    EXPECT_THAT(titlesOf(port), ElementsAre("Show node", "Copy Address of node", "Kill node"))
        << "no project";
    EXPECT_THAT(titlesOf(shop),
                ElementsAre("Show shop", "Copy Address of shop", "Restart shop", "Kill shop"));
}

TEST_F(PaletteItems, aContainerIsStoppedAndRestartedByName) {
    ListeningPort port{.pid = 9, .command = "docker-proxy", .port = 8080, .container = "web · nginx:1.27"};
    EXPECT_THAT(titlesOf(port, true),
                ElementsAre("Open web", "Show web", "Copy URL of web", "Restart Container web", "Stop web"));
    port.service = "docker.service";
    EXPECT_THAT(titlesOf(port),
                ElementsAre("Show web", "Copy Address of web", "Restart Container web", "Stop web"))
        << "the container goes before the service";
    EXPECT_TRUE(items()[3].isDestructive);
}

TEST_F(PaletteItems, aContainerWithoutANameIsAPlainProcess) {
    const ListeningPort port{.pid = 9, .command = "docker-proxy", .port = 8080, .container = " · nginx:1.27"};
    const auto titles = titlesOf(port);
    ASSERT_THAT(titles, SizeIs(3));
    EXPECT_TRUE(titles.back().starts_with("Kill ")) << titles.back();
}

TEST_F(PaletteItems, aServiceRowOffersToRestartTheServiceAndToStop) {
    ListeningPort port = shop;
    port.service = "shop.service";
    port.serviceManager = ServiceManager::systemdUser;
    EXPECT_THAT(titlesOf(port),
                ElementsAre("Show shop", "Copy Address of shop", "Restart Service shop", "Stop shop"));
}

TEST_F(PaletteItems, stacksFollowTheRows) {
    contents.stacks = {{.id = QUuid(u"{11111111-2222-3333-4444-555555555555}"), .name = "shop and\napi"},
                       {.id = QUuid::createUuid(), .name = "other"}};
    const std::vector<PaletteItem> all = items();
    ASSERT_THAT(all, SizeIs(9));
    EXPECT_EQ(all[0].id, QStringLiteral("stack-11111111-2222-3333-4444-555555555555"));
    EXPECT_EQ(all[0].subtitle, QStringLiteral("Stack"));
    EXPECT_EQ(all[0].symbol, QStringLiteral("play.fill"));
    EXPECT_EQ(all[0].tint, QStringLiteral("purple"));
    EXPECT_FALSE(all[0].isDestructive);
    EXPECT_FALSE(all[0].title.contains(QLatin1Char('\n'))) << "a name is one line";
    EXPECT_EQ(all[1].title, QStringLiteral("Start other"));
}

TEST_F(PaletteItems, pagesAndTheRestAreAlwaysThere) {
    EXPECT_THAT(list(), ElementsAre("go-Overview | Go to Overview | Page | house | secondary",
                                    "go-All Ports | Go to All Ports | Page | network | secondary",
                                    "go-Watched | Go to Watched | Page | bell | secondary",
                                    "go-Stacks | Go to Stacks | Page | square.stack.3d.up | secondary",
                                    "go-Activity | Go to Activity | Page | clock | secondary",
                                    "refresh | Refresh Ports | ⌘R | arrow.clockwise | secondary",
                                    "system | Show System Processes | Filter | gearshape.2 | secondary"))
        << "without stacks there is no trace of them";
    contents.showAll = true;
    EXPECT_EQ(items().back().title, QStringLiteral("Hide System Processes"));
}

TEST_F(PaletteItems, theKeyIsNamedInTheWordsOfThisSystem) {
    QTranslator words;
    ASSERT_TRUE(words.load(QStringLiteral(":/i18n/tarnvale_linux.qm")));
    QCoreApplication::installTranslator(&words);
    const auto all = items();
    QCoreApplication::removeTranslator(&words);
    EXPECT_EQ(all[all.size() - 2].subtitle, QStringLiteral("Ctrl+R"));
}

TEST_F(PaletteItems, eachItemDoesItsOwn) {
    contents.rows = {{shop, {}, true}, {plain, {}, false}};
    contents.stacks = {{.id = QUuid::createUuid(), .name = "all"}};
    for (const PaletteItem &item : items())
        item.run();
    EXPECT_THAT(done, ElementsAre("open 3000", "show 3000", "copy 3000", "restart 3000", "stop 3000",
                                  "show 22", "copy 22", "stop 22", "start all", "go overview", "go allPorts",
                                  "go watched", "go stacks", "go activity", "refresh", "flip"));
}

TEST_F(PaletteItems, anItemOutlivesTheList) {
    contents.rows = {{shop, {}, true}};
    std::function<void()> run;
    {
        std::vector<PaletteItem> all = items();
        run = all.front().run;
    }
    contents = {};
    run();
    EXPECT_THAT(done, ElementsAre("open 3000"));
}

TEST_F(PaletteItems, namesOfProcessesArePlainText) {
    const ListeningPort port{.pid = 7, .command = "no\nde%1\xff\u202e", .port = 4000};
    for (const std::string &title : titlesOf(port)) {
        EXPECT_EQ(title.find('\n'), std::string::npos);
        EXPECT_EQ(title.find("\u202e"), std::string::npos);
        EXPECT_NE(title.find("de%1"), std::string::npos) << title;
    }
    EXPECT_THAT(done, IsEmpty());
}

} // namespace
} // namespace tarnvale
