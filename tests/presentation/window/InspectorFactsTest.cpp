#include "presentation/window/InspectorFacts.h"

#include "presentation/window/WindowTest.h"

#include <QLocale>

#include <gmock/gmock.h>

namespace tarnvale {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

class InspectorFactsTest : public WindowTest {
protected:
    /// Two scans with a window that looks at them, so that every port has an answer.
    void startWatched() {
        startView();
        look();
        scan();
    }

    [[nodiscard]] RowEntry entry(std::int64_t port) const {
        for (const RowSection &group : groupedRows(store->ports(), webTestOf(*store)))
            for (const RowEntry &row : group.rows)
                if (row.port->port == port)
                    return row;
        throw std::runtime_error("there is no such row");
    }

    [[nodiscard]] InspectorFacts of(const RowEntry &row, const InspectorFiles &files = {}) {
        return inspectorFacts(*store, row, files, world.clock.now(), namesOf(world.platform()));
    }
    [[nodiscard]] InspectorFacts of(std::int64_t port, const InspectorFiles &files = {}) {
        return of(entry(port), files);
    }

    void addService(Pid pid, std::int64_t port, const char *label) {
        world.machine.add({.pid = pid, .path = "/usr/bin/thing", .args = "thing", .cwd = "/srv/thing"});
        world.machine.listen(pid, port);
        world.machine.services[pid] = {label, ServiceManager::systemd};
    }

    [[nodiscard]] static std::vector<std::string> lines(const RowEntry &row) {
        std::vector<std::string> result;
        for (const DetailLine &line : detailLines(row, applicationFileName))
            result.push_back(line.label.toStdString() + ": " + line.value.toStdString());
        return result;
    }
};

struct Chip {
    Health health;
    const char *text;
    const char *tint;
};

class HealthChips : public testing::TestWithParam<Chip> {};

TEST_P(HealthChips, tellHowAServerAnswers) {
    const auto [text, tint] = healthChip(GetParam().health);
    EXPECT_EQ(text.toStdString(), GetParam().text);
    EXPECT_EQ(tint.toStdString(), GetParam().tint);
}

INSTANTIATE_TEST_SUITE_P(all, HealthChips,
                         testing::Values(Chip{Health::responding(200), "200", "green"},
                                         Chip{Health::responding(299), "299", "green"},
                                         Chip{Health::responding(300), "300", "teal"},
                                         Chip{Health::responding(399), "399", "teal"},
                                         Chip{Health::responding(400), "400", "orange"},
                                         Chip{Health::responding(404), "404", "orange"},
                                         Chip{Health::responding(499), "499", "orange"},
                                         Chip{Health::serverError(500), "500", "red"},
                                         Chip{Health::serverError(503), "503", "red"},
                                         Chip{Health::noResponse(), "No reply", "orange"},
                                         Chip{Health::unknown(), "—", "gray"}));

// What it is called, and how it does.

TEST_F(InspectorFactsTest, aWebServerThatFindsNothingHasAnOrangeChip) {
    addServer(42, 3000);
    answers[3000] = {Health::responding(404), 12};
    startWatched();
    const InspectorFacts facts = of(3000);
    EXPECT_TRUE(facts.isWeb);
    EXPECT_EQ(facts.port, 3000);
    EXPECT_EQ(facts.title, QStringLiteral("shop"));
    EXPECT_EQ(facts.chip, QStringLiteral("404"));
    EXPECT_EQ(facts.chipTint, QStringLiteral("orange"));
    EXPECT_EQ(facts.chipTip, QStringLiteral("Responds (HTTP 404)"));
    EXPECT_EQ(facts.responseTime, QStringLiteral("12 ms"));
}

TEST_F(InspectorFactsTest, theChipsTipIsTheHealthInWords) {
    addServer(42, 3000);
    startWatched();
    for (const auto &[health, tip] :
         std::vector<std::pair<Health, std::string>>{{Health::responding(200), "Responds (HTTP 200)"},
                                                     {Health::serverError(502), "Server error (HTTP 502)"},
                                                     {Health::noResponse(), "No response within 1.5s"}}) {
        answers[3000] = {health, {}};
        pass(35s);
        EXPECT_EQ(of(entry(3000)).chipTip.toStdString(), tip);
    }
    RowEntry stillWeb = entry(3000);
    answers[3000] = {Health::unknown(), {}};
    pass(35s);
    stillWeb.isWeb = true;
    EXPECT_EQ(of(stillWeb).chip, QStringLiteral("—"));
    EXPECT_EQ(of(stillWeb).chipTip, QStringLiteral("Not HTTP or unknown"));
}

TEST_F(InspectorFactsTest, whatIsNoWebServerIsListening) {
    addPostgres();
    startWatched();
    const InspectorFacts facts = of(5432);
    EXPECT_FALSE(facts.isWeb);
    EXPECT_EQ(facts.chip, QStringLiteral("Listening"));
    EXPECT_EQ(facts.chipTint, QStringLiteral("green"));
    EXPECT_EQ(facts.chipTip, QString());
}

TEST_F(InspectorFactsTest, aWebServerThatWasNotAskedYetIsListening) {
    addServer(42, 3000);
    startView();
    ASSERT_TRUE(store->health().empty());
    EXPECT_TRUE(of(3000).isWeb);
    EXPECT_EQ(of(3000).chip, QStringLiteral("Listening"));
    EXPECT_EQ(of(3000).chipTint, QStringLiteral("green"));
    EXPECT_EQ(of(3000).responseTime, QString());
}

TEST_F(InspectorFactsTest, anAnswerOfMoreThanASecondIsSlow) {
    addServer(42, 3000);
    answers[3000] = {Health::responding(200), 1000};
    startWatched();
    EXPECT_EQ(of(3000).responseTime, QStringLiteral("1000 ms"));
    EXPECT_FALSE(of(3000).isSlow);
    answers[3000] = {Health::responding(200), 1001};
    pass(35s);
    EXPECT_EQ(of(3000).responseTime, QStringLiteral("1001 ms"));
    EXPECT_TRUE(of(3000).isSlow);
}

TEST_F(InspectorFactsTest, itSaysHowLongItHasRun) {
    addServer(42, 3000);
    startView();
    ListeningPort port = entry(3000).port;
    port.startedAt = world.clock.now() - 2h - 5min;
    EXPECT_EQ(of({port, {}}).uptime, QStringLiteral("up 2h 5m"));
    port.startedAt.reset();
    EXPECT_EQ(of({port, {}}).uptime, QString());
}

// What can be done with it.

TEST_F(InspectorFactsTest, stopsAreCalledAfterWhatIsStopped) {
    addServer(42, 3000);
    addService(43, 4000, "thing.service");
    addContainer(44, 8080, "db · mysql:8");
    startWatched();
    EXPECT_EQ(of(3000).stopTitle, QStringLiteral("Kill Process"));
    EXPECT_EQ(of(3000).stopTip, QStringLiteral("Kill process"));
    EXPECT_EQ(of(4000).stopTitle, QStringLiteral("Stop Service"));
    EXPECT_EQ(of(4000).stopTip, QStringLiteral("Stop systemd service"));
    EXPECT_EQ(of(8080).stopTitle, QStringLiteral("Stop Container"));
    EXPECT_EQ(of(8080).stopTip, QStringLiteral("Stop container (docker stop db)"));
}

TEST_F(InspectorFactsTest, aServicesRowIsArmedToStop) {
    addService(43, 4000, "thing.service");
    startView();
    ASSERT_EQ(entry(4000).port->container, std::nullopt);
    const PortRow row = portRow(entry(4000), PortGroup::other, {}, world.clock.now());
    EXPECT_EQ(row.confirmTitle, QStringLiteral("Stop"));
}

TEST_F(InspectorFactsTest, anAddressIsCopiedAsWhatItIs) {
    addServer(42, 3000);
    addPostgres();
    startWatched();
    EXPECT_EQ(of(3000).copyTitle, QStringLiteral("Copy URL"));
    EXPECT_EQ(of(5432).copyTitle, QStringLiteral("Copy Address"));
}

struct Restartable {
    const char *name;
    std::optional<std::string> args;
    std::optional<std::string> cwd;
    std::optional<std::string> service;
    std::optional<std::string> container;
    bool canRestart;
    bool canCaptureLogs;
};

class Restarts : public InspectorFactsTest, public testing::WithParamInterface<Restartable> {};

TEST_P(Restarts, areOfferedWhereTheyArePossible) {
    const Restartable &given = GetParam();
    startView();
    const RowEntry row{.port = ListeningPort{.pid = 42,
                                             .command = "node",
                                             .port = 3000,
                                             .cwd = given.cwd,
                                             .args = given.args,
                                             .service = given.service,
                                             .container = given.container},
                       .otherPorts = {},
                       .isWeb = true};
    const InspectorFacts facts = of(row);
    EXPECT_EQ(facts.restartTitle, given.canRestart ? QStringLiteral("Restart") : QString());
    EXPECT_EQ(facts.canCaptureLogs, given.canCaptureLogs);
    EXPECT_EQ(facts.command, QString::fromStdString(given.args.value_or("")));
    EXPECT_EQ(facts.folder, QString::fromStdString(given.cwd.value_or("")));
}

const std::string shopFolder = "/home/me/shop";

INSTANTIATE_TEST_SUITE_P(
    all, Restarts,
    testing::Values(Restartable{"aProject", "node server.js", shopFolder, {}, {}, true, true},
                    Restartable{"withoutArguments", {}, shopFolder, {}, {}, false, false},
                    Restartable{"withoutAFolder", "node server.js", {}, {}, {}, false, false},
                    Restartable{"aSystemProcess", "node server.js", "/", {}, {}, false, false},
                    Restartable{"aService", {}, "/", "thing.service", {}, true, false},
                    Restartable{
                        "aProjectsService", "node server.js", shopFolder, "thing.service", {}, true, false},
                    Restartable{"aContainer", {}, {}, {}, "db · mysql:8", true, false},
                    Restartable{"aProjectsContainer", "x", shopFolder, {}, "db · mysql:8", true, false},
                    Restartable{"aNamelessContainer", {}, {}, {}, " · mysql:8", false, false}),
    [](const auto &given) { return given.param.name; });

// The cards.

TEST_F(InspectorFactsTest, usageIsToldInPercentAndBytes) {
    world.machine.add({.pid = 42,
                       .path = "/usr/bin/node",
                       .args = "node server.js",
                       .cwd = "/home/me/shop",
                       .cpu = 12.46,
                       .memoryKB = 86'221});
    world.machine.listen(42, 3000);
    startView();
    const InspectorFacts facts = of(3000);
    EXPECT_TRUE(facts.hasUsage);
    EXPECT_EQ(facts.cpu, QStringLiteral("12.5%"));
    EXPECT_EQ(facts.memory,
              QLocale().formattedDataSize(86'221LL * 1024, 1, QLocale::DataSizeTraditionalFormat));
    EXPECT_TRUE(facts.memory.contains(QStringLiteral("84"))) << facts.memory.toStdString();
}

TEST_F(InspectorFactsTest, theCaptionHasNoSingular) {
    addServer(42, 3000);
    world.machine.processes[42].cpu = 2;
    startView();
    EXPECT_EQ(of(3000).cpuHistory, QList<double>{2});
    EXPECT_EQ(of(3000).cpuCaption, QStringLiteral("CPU over the last 1 scans"));
    world.machine.processes[42].cpu = 3;
    scan();
    EXPECT_EQ(of(3000).cpuHistory, (QList<double>{2, 3}));
    EXPECT_EQ(of(3000).cpuCaption, QStringLiteral("CPU over the last 2 scans"));
}

TEST_F(InspectorFactsTest, onlyMoreThanEightyPercentIsBusyAndOnlyTheLatest) {
    addServer(42, 3000);
    for (const auto &[cpu, isBusy] :
         std::vector<std::pair<double, bool>>{{80.0, false}, {80.1, true}, {240, true}, {3, false}}) {
        world.machine.processes[42].cpu = cpu;
        if (!store)
            startView();
        else
            scan();
        EXPECT_EQ(of(3000).isBusy, isBusy) << cpu;
    }
}

TEST_F(InspectorFactsTest, withoutAnySampleThereIsNoUsage) {
    startView();
    const InspectorFacts facts =
        of({.port = ListeningPort{.pid = 42, .command = "node", .port = 3000}, .otherPorts = {}});
    EXPECT_FALSE(facts.hasUsage);
    EXPECT_EQ(facts.cpu, QString());
    EXPECT_EQ(facts.memory, QString());
    EXPECT_EQ(facts.cpuCaption, QString());
}

TEST_F(InspectorFactsTest, aCommandLineWithoutEndIsCut) {
    addServer(42, 3000, "node " + std::string(100'000, 'x'));
    startView();
    EXPECT_LE(of(3000).command.size(), 10'001);
    EXPECT_GE(of(3000).command.size(), 9'000);
}

TEST_F(InspectorFactsTest, itKnowsWhetherThePortIsWatched) {
    addServer(42, 3000);
    startView();
    EXPECT_FALSE(of(3000).isWatched);
    EXPECT_EQ(of(3000).watchNote, QStringLiteral("A notification if port 3000 stops listening."));
    store->toggleWatch(record(3000));
    EXPECT_TRUE(of(3000).isWatched);
}

TEST_F(InspectorFactsTest, thePathOfTheHealthCheckIsTheStoredOne) {
    addServer(42, 3000);
    startView();
    EXPECT_EQ(of(3000).healthPath, QStringLiteral("/"));
    store->setHealthPath("/up", record(3000));
    EXPECT_EQ(of(3000).healthPath, QStringLiteral("/up"));
    store->setHealthPath("/", record(3000));
    EXPECT_EQ(of(3000).healthPath, QStringLiteral("/"));
    EXPECT_TRUE(store->healthPaths().empty());
}

TEST_F(InspectorFactsTest, onlyAnExposedWebServerIsForThePhone) {
    startView();
    for (const bool isWeb : {false, true})
        for (const bool isExposed : {false, true}) {
            const RowEntry row{
                .port = ListeningPort{.pid = 42, .command = "node", .port = 3000, .isExposed = isExposed},
                .otherPorts = {},
                .isWeb = isWeb};
            EXPECT_EQ(of(row).hasPhone, isWeb && isExposed);
        }
}

TEST_F(InspectorFactsTest, logsAreNamedAfterWhereTheyComeFrom) {
    addServer(42, 3000);
    startView();
    EXPECT_EQ(of(3000).logName, QString());
    EXPECT_FALSE(of(3000).isLogFile);
    const InspectorFacts file = of(3000, {.files = {}, .log = LogSource::file("/var/log/shop/today.log")});
    EXPECT_EQ(file.logName, QStringLiteral("today.log"));
    EXPECT_TRUE(file.isLogFile);
    const InspectorFacts container =
        of(3000, {.files = {}, .log = LogSource::docker("/usr/bin/docker", "db")});
    EXPECT_EQ(container.logName, QStringLiteral("docker logs db"));
    EXPECT_FALSE(container.isLogFile);
}

// Sharing.

TEST_F(InspectorFactsTest, sharingFollowsTheTunnel) {
    addServer(42, 3000);
    world.tools.installed["cloudflared"] = "/usr/bin/cloudflared";
    startWatched();
    EXPECT_EQ(of(3000).sharing, QStringLiteral("noTool"));
    const InspectorFiles files{.files = {.tunnelTool = TunnelTool::ngrok}, .log = {}};
    EXPECT_EQ(of(3000, files).sharing, QStringLiteral("available"));
    EXPECT_EQ(of(3000, files).shareTool, QStringLiteral("ngrok"));
    store->share(record(3000));
    EXPECT_EQ(of(3000).sharing, QStringLiteral("starting"));
    EXPECT_EQ(of(3000).shareTool, QStringLiteral("cloudflared"));
    EXPECT_EQ(of(3000).publicUrl, QString());
    world.tools.started.back()->write("https://deft-words.trycloudflare.com");
    quiesce();
    EXPECT_EQ(of(3000).sharing, QStringLiteral("up"));
    EXPECT_EQ(of(3000).publicUrl, QStringLiteral("https://deft-words.trycloudflare.com"));
    RowEntry noWeb = entry(3000);
    noWeb.isWeb = false;
    EXPECT_EQ(of(noWeb).sharing, QStringLiteral("up")) << "a tunnel that is there can be ended";
    store->stopSharing(3000);
    EXPECT_EQ(of(3000, files).sharing, QStringLiteral("available"));
}

TEST_F(InspectorFactsTest, whatIsNoWebServerIsNotShared) {
    addPostgres();
    startWatched();
    EXPECT_EQ(of(5432, {.files = {.tunnelTool = TunnelTool::ngrok}, .log = {}}).sharing,
              QStringLiteral("notOffered"));
}

// The details.

TEST_F(InspectorFactsTest, detailsOfARecordThatKnowsEverything) {
    startView();
    const RowEntry row{.port = ListeningPort{.pid = 42,
                                             .command = "node",
                                             .port = 3000,
                                             .isExposed = true,
                                             .startedAt = world.clock.now(),
                                             .service = "thing.service",
                                             .container = "db · mysql:8",
                                             .hostApp = "/Applications/Some Editor.app",
                                             .agent = "Codex"},
                       .otherPorts = {3001, 3002},
                       .isWeb = true};
    EXPECT_THAT(lines(row), ElementsAre("Port: 3000, 3001, 3002", "Address: http://localhost:3000",
                                        "Bound to: All interfaces (LAN)", "PID: 42", StartsWith("Started: "),
                                        "Service: thing.service", "Container: db · mysql:8",
                                        "Started from: Some Editor", "Agent: Codex"));
    const DetailLine started = detailLines(row, applicationFileName)[4];
    EXPECT_TRUE(started.value.contains(QStringLiteral("25"))) << started.value.toStdString();
}

TEST_F(InspectorFactsTest, detailsOfARecordThatKnowsNothing) {
    EXPECT_THAT(lines({.port = ListeningPort{.pid = 42, .command = "node", .port = 5432}, .otherPorts = {}}),
                ElementsAre("Port: 5432", "Address: localhost:5432", "Bound to: This Mac only", "PID: 42"));
}

TEST_F(InspectorFactsTest, textsOfOthersAreMadePlain) {
    startView();
    const RowEntry row{.port = ListeningPort{.pid = 42,
                                             .command = "node",
                                             .port = 3000,
                                             .cwd = "/home/me/a\nb\x1b[31m",
                                             .args = "node\x01\xff server.js",
                                             .service = "evil\nline"},
                       .otherPorts = {}};
    const auto isPlain = [](const QString &text) {
        return std::none_of(text.begin(), text.end(), [](QChar letter) { return letter.unicode() < ' '; });
    };
    const InspectorFacts facts = of(row);
    EXPECT_TRUE(isPlain(facts.command)) << facts.command.toStdString();
    EXPECT_TRUE(isPlain(facts.folder)) << facts.folder.toStdString();
    for (const DetailLine &line : detailLines(row, applicationFileName))
        EXPECT_TRUE(isPlain(line.value)) << line.value.toStdString();
}

TEST_F(InspectorFactsTest, theSameRecordGivesTheSameFacts) {
    addServer(42, 3000);
    startWatched();
    EXPECT_EQ(of(3000), of(3000));
    EXPECT_THAT(of(3000).command, testing::Not(testing::Eq(QString())));
}

} // namespace
} // namespace tarnvale
