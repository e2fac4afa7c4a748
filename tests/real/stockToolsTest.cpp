#include "discovery/StockToolsMachine.h"
#include "discovery/linux/LinuxMachine.h"
#include "discovery/scanListeningPorts.h"
#include "real/RealProcess.h"
#include "real/servers.h"
#include "support/TemporaryFolder.h"
#include "support/TestProcess.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <gmock/gmock.h>
#include <list>

namespace tarnvale {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAreArray;
using testing::IsEmpty;
using testing::Not;

/// A handful of different servers, and what both machines tell about them.
class RealStockToolsTest : public testing::Test {
protected:
    void SetUp() override {
        TARNVALE_NEEDS_PROGRAM(lsof, "lsof");
        TARNVALE_NEEDS_PROGRAM(ps, "ps");
        for (const char *folder : {"python", "node", "php public/public", "nginx"})
            std::filesystem::create_directories(temporary.path(folder));
        startAll();
        for (const ReservedPort &port : ports)
            ASSERT_TRUE(awaitListeners(port.number()));
        if (servers.empty())
            GTEST_SKIP() << "neither python3, node, php nor nginx is installed";
    }

    void startAll() {
        if (const auto python = findProgram("python3"))
            start({*python, "-m", "http.server", "--bind", "127.0.0.1", newPort()}, "python");
        if (const auto python = findProgram("python3"))
            start({*python, "-m", "http.server", newPort()}, "python");
        if (const auto node = findProgram("node"))
            start({*node, "-e", "require('http').createServer().listen(" + newPort() + ", '127.0.0.1')"},
                  "node");
        if (const auto php = findProgram("php"))
            start({*php, "-S", "0.0.0.0:" + newPort()}, "php public/public");
        if (const auto nginx = findProgram("nginx"))
            startNginx(*nginx);
    }

    void startNginx(const std::string &nginx) {
        const std::string folder = temporary.path("nginx");
        std::string config = "daemon off; worker_processes 2; error_log stderr; pid " + folder +
                             "/pid;\n"
                             "events { worker_connections 16; }\nhttp { access_log off; ";
        for (const char *kind : {"client_body", "proxy", "fastcgi", "uwsgi", "scgi"})
            config += std::string(kind) + "_temp_path " + folder + "/" + kind + "; ";
        config += "server { listen 127.0.0.1:" + newPort() + "; } }\n";
        temporary.write("nginx/nginx.conf", config);
        start({nginx, "-e", "stderr", "-p", folder, "-c", folder + "/nginx.conf"}, "nginx");
        const Pid master = servers.back().pid();
        ASSERT_TRUE(eventually([&] { return descendantsOf(master).size() == 2; }));
    }

    void start(const std::vector<std::string> &words, const std::string &folder) {
        servers.emplace_back(words, ProcessSetup{.folder = temporary.path(folder)});
    }

    std::string newPort() { return ports.emplace_back().text(); }

    [[nodiscard]] std::vector<ListeningPort> scan(Machine &machine) const {
        std::vector<ListeningPort> found = scanListeningPorts(machine);
        std::erase_if(found, [&](const ListeningPort &record) {
            return std::none_of(ports.begin(), ports.end(),
                                [&](const ReservedPort &port) { return port.number() == record.port; });
        });
        return found;
    }

    TemporaryFolder temporary;
    std::list<ReservedPort> ports;
    std::list<RealProcess> servers;
};

/// `record` without what the two machines may tell differently:
/// - the start: ps tells an age in whole seconds, and by when it counts is known only to the length of the
/// scan;
/// - the use of the processor: ps divides by an age in whole seconds, which says little of a young process;
/// - memory: it changes between two readings, and the kernel counts some of it late;
/// - the command: lsof has the kernel's name, cut at 15 characters, or the one of a runtime's main thread;
/// - service, container and host: stock tools ask launchd and the Mac's bundles.
ListeningPort comparable(ListeningPort record) {
    record.startedAt.reset();
    record.cpu.reset();
    record.memoryKB.reset();
    record.command.clear();
    record.service.reset();
    record.serviceManager = {};
    record.container.reset();
    record.hostApp.reset();
    return record;
}

TEST_F(RealStockToolsTest, bothMachinesAgreeOnEveryFieldThatBothCanSee) {
    LinuxMachine native;
    StockToolsMachine stock;
    const auto ours = scan(native);
    const auto before = std::chrono::steady_clock::now();
    const auto theirs = scan(stock);
    const auto taken = std::chrono::steady_clock::now() - before;
    ASSERT_EQ(ours.size(), ports.size());
    ASSERT_EQ(theirs.size(), ports.size());
    for (std::size_t i = 0; i < ours.size(); ++i) {
        SCOPED_TRACE(ours[i].args.value_or("") + " on :" + std::to_string(ours[i].port));
        EXPECT_EQ(comparable(ours[i]), comparable(theirs[i]));
        EXPECT_EQ(ours[i].args, theirs[i].args);
        EXPECT_EQ(ours[i].cwd, theirs[i].cwd);
        EXPECT_TRUE(ours[i].command.starts_with(theirs[i].command) ||
                    theirs[i].command.ends_with("MainThread"))
            << ours[i].command << " and " << theirs[i].command;
        ASSERT_TRUE(ours[i].startedAt && theirs[i].startedAt);
        EXPECT_LT(std::chrono::abs(*ours[i].startedAt - *theirs[i].startedAt), 2s + taken);
        EXPECT_LT(std::abs(ours[i].memoryKB.value_or(0) - theirs[i].memoryKB.value_or(0)), 2048);
        EXPECT_EQ(ours[i].title(), theirs[i].title());
    }
}

TEST_F(RealStockToolsTest, bothMachinesAgreeOnAnOldProcess) {
    constexpr Pid first = 1;
    if (timesOf(first).age < 60)
        GTEST_SKIP() << "the machine's first process is too young";
    LinuxMachine native;
    StockToolsMachine stock;
    const auto ours = native.processDetails({first});
    const auto theirs = stock.processDetails({first});
    ASSERT_TRUE(ours.contains(first) && theirs.contains(first));
    EXPECT_EQ(ours.at(first).ppid, theirs.at(first).ppid);
    EXPECT_EQ(ours.at(first).args, theirs.at(first).args);
    EXPECT_NEAR(ours.at(first).uptime, theirs.at(first).uptime, 2);
    EXPECT_NEAR(ours.at(first).cpu, theirs.at(first).cpu, 0.3);
    EXPECT_NEAR(static_cast<double>(ours.at(first).memoryKB), static_cast<double>(theirs.at(first).memoryKB),
                2048);
}

TEST_F(RealStockToolsTest, bothMachinesSeeTheSameAncestors) {
    std::vector<Pid> pids;
    for (const RealProcess &server : servers)
        pids.push_back(server.pid());
    LinuxMachine native;
    StockToolsMachine stock;
    const ProcessTable ours = native.processTable(pids);
    const ProcessTable theirs = stock.processTable(pids);
    for (const Pid pid : pids) {
        const auto chain = ancestorChain(pid, ours);
        EXPECT_THAT(chain, Not(IsEmpty()));
        EXPECT_THAT(chain, ElementsAreArray(ancestorChain(pid, theirs)));
    }
}

} // namespace
} // namespace tarnvale
