#include "presentation/portTexts.h"

#include <QCoreApplication>
#include <QTranslator>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ostream>

namespace tarnvale {
namespace {

const Instant now{std::chrono::sys_days{std::chrono::year{2025} / 3 / 1} + std::chrono::hours(12)};

struct Texts {
    std::string title;
    std::string subtitle;

    bool operator==(const Texts &) const = default;
    friend std::ostream &operator<<(std::ostream &out, const Texts &texts) {
        return out << texts.title << " | " << texts.subtitle;
    }
};

Texts textsOf(const ListeningPort &port) {
    const auto [title, subtitle] = portTitleAndSubtitle(port, now);
    return {title.toStdString(), subtitle.toStdString()};
}

std::string toolTip(const ListeningPort &port) {
    return portToolTip(port).toStdString();
}

std::string stopTitle(const ListeningPort &port) {
    return stopActionTitle(port).toStdString();
}

TEST(PortTextsTest, aContainerIsTitledByItsNameAndImage) {
    EXPECT_EQ(textsOf({.command = "docker-proxy", .container = "web · nginx:1.27"}),
              (Texts{"web", "nginx:1.27"}));
    EXPECT_EQ(textsOf({.command = "docker-proxy", .cwd = "/src/shop", .container = "web"}),
              (Texts{"web", "Docker"}));
    EXPECT_EQ(textsOf({.container = "web · nginx · more"}), (Texts{"web", "nginx"}));
    EXPECT_EQ(textsOf({.service = "docker.service", .container = "web · nginx"}), (Texts{"web", "nginx"}));
}

TEST(PortTextsTest, theTitleIsTheProjectOrElseTheTool) {
    EXPECT_EQ(textsOf({.command = "node", .cwd = "/src/shop"}), (Texts{"shop", "node"}));
    EXPECT_EQ(textsOf({.command = "node", .cwd = "/usr/bin"}), (Texts{"node", ""}));
    EXPECT_EQ(textsOf({.command = "node"}), (Texts{"node", ""}));
    EXPECT_EQ(textsOf({.command = "php", .cwd = "/src/shop/public", .args = "php artisan serve"}),
              (Texts{"shop", "Laravel"}));
}

TEST(PortTextsTest, theToolIsLeftOutWhereTheTitleNamesIt) {
    EXPECT_EQ(textsOf({.command = "Node", .cwd = "/src/nODE"}), (Texts{"nODE", ""}));
    EXPECT_EQ(textsOf({.command = "ollama-arm64"}), (Texts{"ollama", ""}));
    EXPECT_EQ(textsOf({.command = "php-arm64", .cwd = "/src/laravel", .args = "php artisan serve"}),
              (Texts{"laravel", "php"}));
    EXPECT_EQ(textsOf({.command = "Übung", .cwd = "/src/ÜBUNG"}), (Texts{"ÜBUNG", ""}));
}

TEST(PortTextsTest, aServiceSaysWhoRunsIt) {
    EXPECT_EQ(textsOf({.command = "redis-server", .service = "homebrew.mxcl.redis"}),
              (Texts{"redis", "Homebrew"}));
    EXPECT_EQ(textsOf({.command = "node", .cwd = "/src/shop", .service = "com.example.shop"}),
              (Texts{"shop", "launchd"}));
    for (const ServiceManager manager : {ServiceManager::systemd, ServiceManager::systemdUser}) {
        EXPECT_EQ(textsOf({.command = "nginx", .service = "nginx.service", .serviceManager = manager}),
                  (Texts{"nginx", "systemd"}));
        EXPECT_EQ(
            textsOf(
                {.command = "redis-server", .service = "homebrew.redis.service", .serviceManager = manager}),
            (Texts{"redis", "Homebrew"}));
    }
}

TEST(PortTextsTest, hostApplicationAndAgeFollow) {
    ListeningPort port{.command = "node",
                       .cwd = "/src/shop",
                       .startedAt = now - std::chrono::minutes(125),
                       .hostApp = "/Applications/Some Editor.app"};
    EXPECT_EQ(textsOf(port), (Texts{"shop", "node · Some Editor · up 2h 5m"}));
    port.container = "web";
    EXPECT_EQ(textsOf(port), (Texts{"web", "Docker · Some Editor · up 2h 5m"}));
    EXPECT_EQ(textsOf({.command = "node", .startedAt = now}), (Texts{"node", "up 0s"}));
    EXPECT_EQ(textsOf({.command = "node", .startedAt = now + std::chrono::hours(1)}),
              (Texts{"node", "up 0s"}));
}

TEST(PortTextsTest, theDesktopsNameOfAnApplicationIsTheOneShown) {
    const ListeningPort port{.command = "node", .hostApp = "/usr/share/applications/ed.desktop"};
    const auto named =
        portTitleAndSubtitle(port, now, [](const std::string &path) { return "<" + path + ">"; });
    EXPECT_EQ(named.subtitle, "</usr/share/applications/ed.desktop>");
    const auto nameless = portTitleAndSubtitle(port, now, [](const std::string &) { return std::string(); });
    EXPECT_EQ(nameless.subtitle, "");
}

TEST(PortTextsTest, aProcessCannotDisturbTheRowThroughItsName) {
    EXPECT_EQ(textsOf({.command = "no\nde", .cwd = "/src/a\u202eb\xff"}),
              (Texts{"a\ufffdb\ufffd", "no\ufffdde"}));
    EXPECT_EQ(toolTip({.pid = 7, .args = "x\nStarted by Codex"}), "x\ufffdStarted by Codex\nPID 7");
}

TEST(PortTextsTest, theToolTipHoldsWhatIsKnown) {
    EXPECT_EQ(toolTip({.pid = 7, .command = "node"}), "node\nPID 7");
    EXPECT_EQ(toolTip({.pid = 7, .command = "node", .args = ""}), "node\nPID 7");
    EXPECT_EQ(toolTip({.pid = 1234567,
                       .command = "node",
                       .cwd = "/src/shop",
                       .args = "node %1 server.js",
                       .agent = "Claude Code"}),
              "node %1 server.js\nPID 1234567\nStarted by Claude Code\n/src/shop");
}

TEST(PortTextsTest, anEndlessCommandLineIsCutBetweenCharacters) {
    const auto ofLength = [](std::size_t length) {
        std::string text;
        for (std::size_t i = 0; i < length; ++i)
            text += "😀";
        return text;
    };
    EXPECT_EQ(toolTip({.pid = 7, .args = ofLength(2000)}), ofLength(2000) + "\nPID 7");
    EXPECT_EQ(toolTip({.pid = 7, .args = ofLength(2001)}), ofLength(2000) + "…\nPID 7");
    EXPECT_EQ(toolTip({.pid = 7, .args = std::string(3'000'000, 'x')}), std::string(2000, 'x') + "…\nPID 7");
}

TEST(PortTextsTest, theStopActionTellsWhatItWillDo) {
    struct Row {
        ListeningPort port;
        std::string text;
    };
    constexpr auto systemd = ServiceManager::systemd;
    const std::vector<Row> rows{
        {{.command = "node"}, "Kill process"},
        {{.command = "node", .container = "web · nginx"}, "Stop container (docker stop web)"},
        {{.service = "homebrew.mxcl.redis", .container = "web"}, "Stop container (docker stop web)"},
        {{.container = " · nginx"}, "Kill process"},
        {{.service = "homebrew.mxcl.redis"}, "Stop service (brew services stop redis)"},
        {{.service = "homebrew.redis.service", .serviceManager = systemd},
         "Stop service (brew services stop redis)"},
        {{.service = "com.example.shop"}, "Stop launchd service"},
        {{.service = "shop.service", .serviceManager = systemd}, "Stop systemd service"},
        {{.service = "shop.service", .serviceManager = ServiceManager::systemdUser}, "Stop systemd service"},
    };
    for (const Row &row : rows)
        EXPECT_EQ(stopTitle(row.port), row.text);
}

/// Every text of the rules in brackets.
class Brackets : public QTranslator {
public:
    bool isEmpty() const override { return false; }
    QString translate(const char *context, const char *text, const char *, int) const override {
        return QLatin1StringView(context) == QLatin1StringView("PortUI") ? "[" + QString::fromUtf8(text) + "]"
                                                                         : QString();
    }
};

TEST(PortTextsTest, ourOwnWordsCanBeTranslatedAndNamesCannot) {
    Brackets brackets;
    QCoreApplication::installTranslator(&brackets);
    EXPECT_EQ(textsOf({.command = "node", .cwd = "/src/shop", .startedAt = now}),
              (Texts{"shop", "node · [up 0s]"}));
    EXPECT_EQ(textsOf({.container = "web"}), (Texts{"web", "[Docker]"}));
    EXPECT_EQ(toolTip({.pid = 7, .command = "node", .agent = "Codex"}), "node\n[PID 7]\n[Started by Codex]");
    EXPECT_EQ(stopTitle({.container = "web"}), "[Stop container (docker stop web)]");
    QCoreApplication::removeTranslator(&brackets);
}

} // namespace
} // namespace tarnvale
