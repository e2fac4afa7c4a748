#include "real/RealProcess.h"
#include "real/servers.h"
#include "support/TemporaryFolder.h"
#include "support/TestProcess.h"

#include <filesystem>
#include <gmock/gmock.h>

namespace tarnvale {
namespace {

using testing::ElementsAre;
using testing::MatchesRegex;
using testing::SizeIs;

/// A project whose `artisan` does what Laravel's does for `serve`: it runs PHP's own server as its child, in
/// the folder that is served, and waits.
class RealArtisanTest : public testing::Test {
protected:
    void SetUp() override {
        TARNVALE_NEEDS_PROGRAM(program, "php");
        php = program;
        temporary.write("shop/artisan", R"(<?php
$port = substr($argv[2], strlen('--port='));
$child = proc_open([PHP_BINARY, '-S', '127.0.0.1:' . $port, __DIR__ . '/server.php'],
                   [STDIN, STDOUT, STDERR], $pipes, __DIR__ . '/public');
while (proc_get_status($child)['running'])
    usleep(20000);
)");
        // A request keeps the processor busy for a while, so that the worker can be told by its use.
        temporary.write("shop/server.php", R"(<?php
for ($end = hrtime(true) + 400000000; hrtime(true) < $end;);
echo 'done';
)");
        std::filesystem::create_directories(temporary.path("shop/public"));
        server.emplace(
            std::vector{php, std::string("artisan"), std::string("serve"), "--port=" + port.text()},
            ProcessSetup{.folder = temporary.path("shop")});
        ASSERT_TRUE(awaitListeners(port.number())) << server->output();
        const auto children = descendantsOf(server->pid());
        ASSERT_THAT(children, SizeIs(1));
        worker = children.front();
    }

    TemporaryFolder temporary;
    ReservedPort port;
    std::string php;
    std::optional<RealProcess> server;
    Pid worker = -1;
};

/// The share of a processor that `pid` has used so far, from the least to the most that it can be: readings
/// on both sides of a scan set bounds to what the scan can have seen.
struct Share {
    double least = 0;
    double most = 0;
};

Share shareBetween(const ProcessTimes &before, const ProcessTimes &after) {
    return {100 * before.used / after.age, 100 * after.used / before.age};
}

TEST_F(RealArtisanTest, theRecordIsTheParentsAndItsUseIsTheWorkers) {
    ASSERT_EQ(httpGet(port.number()), "done");
    const ProcessTimes parentBefore = timesOf(server->pid());
    const ProcessTimes workerBefore = timesOf(worker);
    const auto records = scanPort(port.number());
    const Share parentShare = shareBetween(parentBefore, timesOf(server->pid()));
    const Share workerShare = shareBetween(workerBefore, timesOf(worker));

    ASSERT_THAT(records, SizeIs(1));
    const ListeningPort &record = records.front();
    EXPECT_EQ(record.pid, server->pid());
    EXPECT_EQ(record.workerPID, worker);
    EXPECT_EQ(record.command, commandOf(worker));
    EXPECT_EQ(record.args, php + " artisan serve --port=" + port.text());
    EXPECT_EQ(record.cwd, std::filesystem::canonical(temporary.path("shop")));
    EXPECT_EQ(record.displayName(), "Laravel");
    EXPECT_EQ(record.title(), "shop");
    EXPECT_FALSE(record.isExposed);
    ASSERT_LT(parentShare.most, workerShare.least) << "the two can't be told apart";
    EXPECT_GE(record.cpu.value_or(-1), workerShare.least - 0.1);
    EXPECT_LE(record.cpu.value_or(-1), workerShare.most + 0.1);
}

TEST_F(RealArtisanTest, stoppingEndsTheParentAndThenTheWorker) {
    const std::string command = commandOf(worker);
    const ProgramRun run = tarnctl({"kill", port.text()});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.output, "Stopped " + command + " (PID " + std::to_string(server->pid()) +
                              ") on :" + port.text() + ".\n");
    EXPECT_EQ(run.error, "");
    EXPECT_TRUE(server->waitForEnd());
    EXPECT_TRUE(eventually([&] { return !isAlive(worker); })) << "the worker is still there";
    EXPECT_EQ(listenerCount(port.number()), 0u);
}

TEST_F(RealArtisanTest, theTableShowsTheParent) {
    EXPECT_THAT(rowsOf(tarnctl({"ports"}).output, port.number()),
                ElementsAre(MatchesRegex(":" + port.text() + " +" + std::to_string(server->pid()) +
                                         " +[0-9]+s +shop +php.*")));
}

} // namespace
} // namespace tarnvale
