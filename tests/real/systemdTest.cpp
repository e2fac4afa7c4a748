#include "discovery/isDevPort.h"
#include "discovery/linux/LinuxMachine.h"
#include "real/UserServiceManager.h"
#include "real/scanAs.h"
#include "real/servers.h"
#include "support/TestProcess.h"

#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>

namespace tarnvale {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::Field;
using testing::IsEmpty;
using testing::SizeIs;

/// What each service of these tests answers.
constexpr std::string_view page = "still here";

/// A user manager, a server to run under it, and a name for its unit that no other test has.
class RealSystemdTest : public testing::Test {
protected:
    void SetUp() override {
        TARNVALE_NEEDS_PROGRAM(found, "python3");
        if (!manager.problem().empty())
            GTEST_SKIP() << manager.problem();
        python = found;
        temporary.write("index.html", page);
        server = "\"" + python + "\" -m http.server --bind 127.0.0.1 " + port.text();
    }

    /// `command` as a child of a shell that waits for it.
    static std::vector<std::string> asChild(const std::string &command) {
        return {"/bin/sh", "-c", command + " & wait"};
    }

    [[nodiscard]] bool runServer(const std::vector<std::string> &words) {
        return manager.run(service(), words, temporary.path()) && awaitListeners(port.number());
    }

    [[nodiscard]] std::string service() const { return unit + ".service"; }

    /// The whole of what is printed on trying to stop what `unitName` started, under the name `command`.
    [[nodiscard]] std::string refusal(const std::string &command, const std::string &unitName) const {
        return command + " on :" + port.text() +
               " is a systemd service — stop it with: systemctl --user stop " + unitName + "\n";
    }

    UserServiceManager manager;
    TemporaryFolder temporary;
    ReservedPort port;
    std::string unit = "tarnvale-real-" + std::to_string(getpid());
    std::string python;
    std::string server; ///< the shell command that starts one on the port
};

TEST_F(RealSystemdTest, aServicesMainProcessIsTheService) {
    ASSERT_TRUE(runServer({python, "-m", "http.server", "--bind", "127.0.0.1", port.text()}));
    const auto records = scanPort(port.number());
    ASSERT_THAT(records, SizeIs(1));
    const ListeningPort &record = records.front();
    EXPECT_EQ(record.pid, manager.mainPid(service()));
    EXPECT_EQ(record.service, service());
    EXPECT_EQ(record.serviceManager, ServiceManager::systemdUser);
    EXPECT_EQ(record.hostApp, std::nullopt);
    EXPECT_EQ(record.brewService(), std::nullopt);
    EXPECT_EQ(record.cwd, std::filesystem::canonical(temporary.path()));
    EXPECT_THAT(rowsOf(tarnctl({"ports", "--all"}).output, port.number()),
                ElementsAre(EndsWith("python3 (systemd)")));

    const ProgramRun run = tarnctl({"kill", port.text()});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.output, refusal("python3", service()));
    EXPECT_EQ(run.error, "");
    EXPECT_EQ(httpGet(port.number()), page);

    // The advice does what it says.
    EXPECT_EQ(manager.systemctl({"stop", service()}).status, 0);
    EXPECT_EQ(listenerCount(port.number()), 0u);
}

TEST_F(RealSystemdTest, aChildOfTheMainProcessIsTheServiceToo) {
    ASSERT_TRUE(runServer(asChild(server)));
    const auto records = scanPort(port.number());
    ASSERT_THAT(records, SizeIs(1));
    EXPECT_NE(records.front().pid, manager.mainPid(service()));
    EXPECT_EQ(records.front().service, service());
    EXPECT_EQ(records.front().serviceManager, ServiceManager::systemdUser);

    const ProgramRun run = tarnctl({"kill", port.text()});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.output, refusal("python3", service()));
    EXPECT_EQ(httpGet(port.number()), page);
}

TEST_F(RealSystemdTest, aGrandchildIsAPlainProcess) {
    ASSERT_TRUE(runServer(asChild("/bin/sh -c '" + server + " & wait'")));
    const auto records = scanPort(port.number());
    ASSERT_THAT(records, SizeIs(1));
    EXPECT_EQ(records.front().service, std::nullopt);

    const ProgramRun run = tarnctl({"kill", port.text()});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.output,
              "Stopped python3 (PID " + std::to_string(records.front().pid) + ") on :" + port.text() + ".\n");
    EXPECT_TRUE(eventually([&] { return listenerCount(port.number()) == 0; }));
}

TEST_F(RealSystemdTest, aHomebrewFormulaIsStoppedThroughHomebrew) {
    const std::string formula = "tarnvale-real-" + std::to_string(getpid());
    unit = "homebrew." + formula;
    ASSERT_TRUE(runServer({python, "-m", "http.server", "--bind", "127.0.0.1", port.text()}));
    const auto records = scanPort(port.number());
    ASSERT_THAT(records, SizeIs(1));
    EXPECT_EQ(records.front().brewService(), formula);
    EXPECT_TRUE(isDevPort(records.front()));
    const ProgramRun run = tarnctl({"kill", port.text()});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.output, "python3 on :" + port.text() +
                              " is a systemd service — stop it with: brew services stop " + formula + "\n");
    EXPECT_EQ(httpGet(port.number()), page);
}

TEST_F(RealSystemdTest, aSocketThatWaitsIsItsSocketUnitUntilTheServiceRuns) {
    const std::string script =
        temporary.write("activated.py", "import http.server, socket\n"
                                        "server = http.server.HTTPServer(('', 0), "
                                        "http.server.SimpleHTTPRequestHandler, False)\n"
                                        "server.socket = socket.socket(fileno=3)\n"
                                        "server.serve_forever()\n");
    ASSERT_TRUE(manager.run(unit, {python, script}, temporary.path(),
                            {"--socket-property=ListenStream=127.0.0.1:" + port.text()}));
    ASSERT_TRUE(awaitListeners(port.number()));

    LinuxMachine machine;
    const auto waiting = scanPort(machine, port.number());
    ASSERT_THAT(waiting, SizeIs(1));
    EXPECT_EQ(waiting.front().pid, manager.pid());
    EXPECT_EQ(waiting.front().service, unit + ".socket");
    EXPECT_EQ(waiting.front().serviceManager, ServiceManager::systemdUser);
    EXPECT_FALSE(waiting.front().isExposed);
    EXPECT_EQ(waiting.front().hostApp, std::nullopt);
    const ProgramRun early = tarnctl({"kill", port.text()});
    EXPECT_EQ(early.status, 1);
    EXPECT_EQ(early.output, refusal(waiting.front().command, unit + ".socket"));
    EXPECT_EQ(manager.mainPid(service()), 0) << "looking at the port has started the service";

    EXPECT_EQ(httpGet(port.number()), page);
    const auto running = scanPort(machine, port.number());
    ASSERT_THAT(running, SizeIs(1));
    EXPECT_EQ(running.front().pid, manager.mainPid(service()));
    EXPECT_EQ(running.front().command, "python3");
    EXPECT_EQ(running.front().service, service());
    const ProgramRun late = tarnctl({"kill", port.text()});
    EXPECT_EQ(late.status, 1);
    EXPECT_EQ(late.output, refusal("python3", service()));
    EXPECT_EQ(httpGet(port.number()), page);

    EXPECT_EQ(manager.systemctl({"stop", service()}).status, 0);
    EXPECT_THAT(scanPort(machine, port.number()), ElementsAre(Field(&ListeningPort::pid, manager.pid())));
    EXPECT_TRUE(isAlive(manager.pid()));
}

/// Where a desktop application's scope is told from: its unit's name and its desktop file.
struct ScopeCase {
    const char *what;
    const char *unit;   ///< without what tells one test run from another
    const char *id;     ///< of the desktop file that there is
    bool isHost = true; ///< that file must be told as the host
};

void PrintTo(const ScopeCase &scope, std::ostream *stream) {
    *stream << scope.what;
}

class RealScopeTest : public RealSystemdTest, public testing::WithParamInterface<ScopeCase> {};

TEST_P(RealScopeTest, hostsTheServersThatItsProcessesStart) {
    const std::string desktopFile = manager.applicationFolder() + "/" + GetParam().id + ".desktop";
    std::ofstream(desktopFile) << "[Desktop Entry]\nType=Application\nName=Editor\nExec=no-such-editor %F\n";
    const std::string scope = GetParam().unit + ("-" + std::to_string(getpid())) + ".scope";
    const RealProcess application(manager.scoped(scope, asChild(server)), {.folder = temporary.path()});
    ASSERT_TRUE(awaitListeners(port.number())) << application.output();
    const auto records = scanPort(port.number());
    ASSERT_THAT(records, SizeIs(1));
    EXPECT_EQ(records.front().service, std::nullopt);
    // Elsewhere the host is whatever runs these tests, a terminal or nothing.
    if (GetParam().isHost)
        EXPECT_EQ(records.front().hostApp, desktopFile);
    else
        EXPECT_NE(records.front().hostApp, desktopFile);
}

INSTANTIATE_TEST_SUITE_P(
    All, RealScopeTest,
    testing::Values(ScopeCase{"launchedByADesktop", "app-gnome-org.example.Editor", "org.example.Editor"},
                    ScopeCase{"launchedByNobody", "app-org.example.Editor", "org.example.Editor"},
                    ScopeCase{"aDashInTheId", "app-gnome-org.example.My\\x2dEditor", "org.example.My-Editor"},
                    ScopeCase{"fromFlatpak", "flatpak-org.example.Editor", "org.example.Editor"},
                    ScopeCase{"ourOwnLaunches", "tarnvale-launch", "tarnvale-launch", false},
                    ScopeCase{"ourselves", "app-gnome-dev.tarnvale.Tarnvale", "dev.tarnvale.Tarnvale", false},
                    ScopeCase{"anotherApplicationsFile", "app-gnome-org.example.Editor", "org.example.Viewer",
                              false}));

TEST_F(RealSystemdTest, theServerOfAScopesFirstProcessIsNotItsOwnHost) {
    std::ofstream(manager.applicationFolder() + "/org.example.Editor.desktop")
        << "[Desktop Entry]\nType=Application\nName=Editor\nExec=no-such-editor\n";
    const std::string scope = "app-gnome-org.example.Editor-" + std::to_string(getpid()) + ".scope";
    const RealProcess application(
        manager.scoped(scope, {python, "-m", "http.server", "--bind", "127.0.0.1", port.text()}));
    ASSERT_TRUE(awaitListeners(port.number())) << application.output();
    const auto records = scanPort(port.number());
    ASSERT_THAT(records, SizeIs(1));
    EXPECT_EQ(records.front().pid, application.pid());
    EXPECT_NE(records.front().hostApp, manager.applicationFolder() + "/org.example.Editor.desktop");
}

TEST_F(RealSystemdTest, anotherUserSeesWhichServiceASocketBelongsTo) {
    ASSERT_TRUE(runServer({python, "-m", "http.server", "--bind", "127.0.0.1", port.text()}));
    const auto records = scanPortAs(nobody, port.number());
    ASSERT_THAT(records, SizeIs(1));
    const ListeningPort &record = records.front();
    EXPECT_EQ(record.pid, manager.mainPid(service()));
    EXPECT_EQ(record.command, "python3");
    EXPECT_EQ(record.service, service());
    EXPECT_EQ(record.serviceManager, ServiceManager::systemdUser);
    EXPECT_EQ(record.args, python + " -m http.server --bind 127.0.0.1 " + port.text());
    EXPECT_EQ(record.cwd, std::nullopt) << "another user's folder can't be read";
}

TEST_F(RealSystemdTest, anotherUserIsNotToldAManagerForASocketThatWaits) {
    ASSERT_TRUE(
        manager.run(unit, {"/bin/true"}, "/", {"--socket-property=ListenStream=127.0.0.1:" + port.text()}));
    ASSERT_TRUE(awaitListeners(port.number()));
    for (const ListeningPort &record : scanPortAs(nobody, port.number()))
        EXPECT_EQ(record.service, unit + ".socket") << "a manager that looks like a plain process";
}

} // namespace
} // namespace tarnvale
