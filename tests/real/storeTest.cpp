// The store's flows on real processes.

#include "real/RealProcess.h"
#include "real/RealStore.h"
#include "real/servers.h"
#include "store/shellQuoted.h"
#include "support/ManualClock.h"
#include "support/TestProcess.h"

#include <gmock/gmock.h>

#include <csignal>

namespace tarnvale {
namespace {

using namespace std::chrono_literals;
using testing::HasSubstr;

class RealStoreTest : public testing::Test {
protected:
    void SetUp() override {
        TARNVALE_NEEDS_PROGRAM(found, "python3");
        python = found;
        project.write("index.html", "served");
    }

    /// The words of a web server on the port.
    std::vector<std::string> server() const {
        return {python, "-m", "http.server", "--bind", "127.0.0.1", port.text()};
    }

    TemporaryFolder parent;
    TemporaryFolder project;
    ReservedPort port;
    std::string python;
    RealStore real;
};

TEST_F(RealStoreTest, aPlainProcessIsStopped) {
    RealProcess process(server(), {.folder = project.path()});
    ASSERT_TRUE(awaitListeners(port.number()));
    const auto record = real.record(port.number());
    ASSERT_TRUE(record);
    ASSERT_TRUE(real.finish(real.store().stop(*record)));
    EXPECT_TRUE(process.waitForEnd());
    EXPECT_EQ(real.error(), "");
    EXPECT_FALSE(real.record(port.number()));
    ASSERT_TRUE(real.finish(real.store().stop(*record)));
    EXPECT_THAT(real.error(), HasSubstr("already exited."));
}

TEST_F(RealStoreTest, whatIgnoresTheSignalIsLeftAlone) {
    ManualClock manual;
    real.clock = &manual;
    RealProcess process({python, "-c",
                         "import signal, http.server as h\n"
                         "signal.signal(signal.SIGTERM, signal.SIG_IGN)\n"
                         "h.HTTPServer(('127.0.0.1', " +
                             port.text() + "), h.SimpleHTTPRequestHandler).serve_forever()"},
                        {.folder = project.path()});
    ASSERT_TRUE(awaitListeners(port.number()));
    const auto record = real.record(port.number());
    ASSERT_TRUE(record);
    auto flow = real.store().restart(*record);
    ASSERT_TRUE(waitFor([&] {
        manual.advance(100ms);
        return flow.isReady();
    }));
    EXPECT_EQ(real.error(),
              record->command + " (PID " + std::to_string(process.pid()) + ") didn't stop within 5 seconds.");
    EXPECT_TRUE(isAlive(process.pid()));
    process.signal(SIGKILL);
}

TEST_F(RealStoreTest, aRestartBringsBackWordsVariablesAndFolder) {
    RealProcess process({python, "-c",
                         "import os, sys, http.server as h\n"
                         "print('told', sys.argv[1], os.environ['ODD'], os.getcwd(), flush=True)\n"
                         "h.HTTPServer(('127.0.0.1', " +
                             port.text() + "), h.SimpleHTTPRequestHandler).serve_forever()",
                         "it's \"odd\"  $HOME"},
                        {.folder = project.path(), .environment = {"ODD=a  'b' \\ $x"}});
    ASSERT_TRUE(awaitListeners(port.number()));
    const auto record = real.record(port.number());
    ASSERT_TRUE(record);
    ASSERT_TRUE(real.finish(real.store().restart(*record)));
    EXPECT_EQ(real.error(), "");
    EXPECT_TRUE(process.waitForEnd());
    ASSERT_TRUE(awaitListeners(port.number()));
    const auto again = real.record(port.number());
    ASSERT_TRUE(again);
    EXPECT_NE(again->pid, record->pid);
    EXPECT_EQ(again->args, record->args);
    EXPECT_EQ(again->cwd, record->cwd);
    EXPECT_EQ(httpGet(port.number(), "/index.html"), "served");

    const auto source = real.store().logSource(*again);
    ASSERT_TRUE(source);
    EXPECT_EQ(source->kind, LogSource::Kind::file);
    const std::string expected = "told it's \"odd\"  $HOME a  'b' \\ $x " + project.path() + "\n";
    EXPECT_TRUE(eventually([&] { return readFile(source->path).starts_with(expected); }))
        << readFile(source->path);

    ASSERT_TRUE(real.finish(real.store().stop(*again)));
    EXPECT_TRUE(eventually([&] { return !isAlive(again->pid); }));
    EXPECT_TRUE(real.notifications.posted.empty()) << "an end by signal is no failure";
}

TEST_F(RealStoreTest, theWorkerOfArtisanEndsWithIt) {
    TARNVALE_NEEDS_PROGRAM(php, "php");
    project.write("artisan",
                  "<?php $child = proc_open([PHP_BINARY, '-S', $argv[2], '-t', __DIR__], [], $pipes);\n"
                  "while (proc_get_status($child)['running']) usleep(50000);\n");
    RealProcess process({php, "artisan", "serve", "127.0.0.1:" + port.text()}, {.folder = project.path()});
    ASSERT_TRUE(awaitListeners(port.number()));
    const auto record = real.record(port.number());
    ASSERT_TRUE(record);
    ASSERT_TRUE(record->workerPID);
    EXPECT_EQ(record->pid, process.pid());
    ASSERT_TRUE(real.finish(real.store().stop(*record)));
    EXPECT_TRUE(process.waitForEnd());
    EXPECT_TRUE(eventually([&] { return !isAlive(*record->workerPID); })) << "the worker was asked, too";
    EXPECT_EQ(real.error(), "");
}

TEST_F(RealStoreTest, aWatchedServerThatStopsCanBeStartedAgain) {
    RealProcess process(server(), {.folder = project.path()});
    ASSERT_TRUE(awaitListeners(port.number()));
    const auto record = real.record(port.number());
    ASSERT_TRUE(record);
    real.store().toggleWatch(*record);
    ASSERT_TRUE(real.record(port.number())); // by now it is known whose it is
    ASSERT_TRUE(waitFor([&] { return !real.store().isScanning(); }));
    process.end();
    ASSERT_FALSE(real.record(port.number()));
    ASSERT_EQ(real.notifications.posted.size(), 1u);
    const Notification &told = real.notifications.posted[0];
    EXPECT_EQ(told.category, "watchedPortStopped");
    real.notifications.onAction("relaunch", *told.payload);
    ASSERT_TRUE(awaitListeners(port.number()));
    const auto again = real.record(port.number());
    ASSERT_TRUE(again);
    EXPECT_EQ(again->cwd, project.path());
    EXPECT_TRUE(real.store().downWatchedPorts().empty());
    ASSERT_TRUE(real.finish(real.store().stop(*again)));
}

TEST_F(RealStoreTest, aConflictOffersToEndTheHolder) {
    RealProcess holder(server(), {.folder = project.path()});
    ASSERT_TRUE(awaitListeners(port.number()));
    ASSERT_TRUE(real.record(port.number()));
    const std::string command = shellQuoted(server());
    ASSERT_TRUE(real.store().launch(command, parent.path(), {}));
    ASSERT_TRUE(waitFor([&] { return !real.notifications.posted.empty(); }));
    const Notification told = real.notifications.posted[0];
    EXPECT_THAT(told.title, testing::AnyOf(HasSubstr("Port conflict in"), HasSubstr("command failed")));
    EXPECT_THAT(told.title, HasSubstr("Port conflict in")) << readFile(real.folder.path("logs"));
    // Python names no port in that message.
    ASSERT_TRUE(real.finish(real.store().killAndRetry(port.number(), command, parent.path())));
    EXPECT_TRUE(holder.waitForEnd());
    ASSERT_TRUE(awaitListeners(port.number()));
    const auto again = real.record(port.number());
    ASSERT_TRUE(again);
    EXPECT_EQ(again->cwd, parent.path());
    ASSERT_TRUE(real.finish(real.store().stop(*again)));
}

TEST_F(RealStoreTest, aCommandThatIsNotFoundIsTold) {
    ASSERT_TRUE(real.store().launch("no-such-command-anywhere --x", project.path(), {}));
    ASSERT_TRUE(waitFor([&] { return !real.notifications.posted.empty(); }));
    EXPECT_THAT(real.notifications.posted[0].title, HasSubstr("command failed"));
    EXPECT_THAT(real.notifications.posted[0].body, HasSubstr("not found"));
}

TEST_F(RealStoreTest, aFolderThatHasGoneIsTold) {
    EXPECT_FALSE(real.store().launch("true", "/no/such/folder", {}));
    EXPECT_THAT(real.error(), HasSubstr("Couldn't start true: "));
    EXPECT_THAT(real.error(), HasSubstr("/no/such/folder"));
}

TEST_F(RealStoreTest, aTunnelToolsOutputLeadsToTheAddress) {
    TemporaryFolder bin;
    bin.writeScript("cloudflared", "echo \"$@\" >&2\n"
                                   "echo 'INF Requesting new quick Tunnel on trycloudflare.com...' >&2\n"
                                   "echo 'INF |  https://deft-words-here.trycloudflare.com  |' >&2\n"
                                   "exec sleep 60\n");
    ImpatientTools tools({bin.path()});
    RealProcess process(server(), {.folder = project.path()});
    ASSERT_TRUE(awaitListeners(port.number()));
    Platform platform = real.platform();
    PortStore store({.clock = platform.clock,
                     .machine = platform.machine,
                     .processes = platform.processes,
                     .settings = platform.settings,
                     .notifications = platform.notifications,
                     .launcher = platform.launcher,
                     .tools = tools,
                     .desktop = platform.desktop,
                     .clipboard = platform.clipboard,
                     .loginItem = platform.loginItem,
                     .previewCapturer = platform.previewCapturer});
    ASSERT_TRUE(waitFor([&] { return store.hasScanned(); }));
    const auto &ports = store.ports();
    const auto found = std::find_if(ports.begin(), ports.end(),
                                    [&](const ListeningPort &row) { return row.port == port.number(); });
    ASSERT_NE(found, ports.end());
    store.share(*found);
    ASSERT_TRUE(waitFor([&] { return !real.notifications.posted.empty(); }));
    EXPECT_THAT(real.clipboard.texts, testing::ElementsAre("https://deft-words-here.trycloudflare.com"));
    EXPECT_THAT(store.tunnels().at(port.number()).output, HasSubstr("--url http://localhost:" + port.text()));
    store.stopSharing(port.number());
    EXPECT_TRUE(store.tunnels().empty());
}

TEST_F(RealStoreTest, aServerIsProbedAsItIs) {
    RealProcess process(server(), {.folder = project.path()});
    ASSERT_TRUE(awaitListeners(port.number()));
    const auto record = real.record(port.number());
    ASSERT_TRUE(record);
    real.store().setMenuOpen(true);
    ASSERT_TRUE(real.finish(real.store().refresh()));
    EXPECT_EQ(real.store().health().at(record->id()), Health::responding(200));
    EXPECT_TRUE(real.store().responseTimes().contains(record->id()));
    real.store().setHealthPath("/missing", *record);
    EXPECT_TRUE(waitFor([&] { return real.store().health().at(record->id()) == Health::responding(404); }));
}

} // namespace
} // namespace tarnvale
