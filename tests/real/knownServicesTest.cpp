#include "discovery/isDevPort.h"
#include "discovery/naming.h"
#include "real/RealProcess.h"
#include "real/scanAs.h"
#include "real/servers.h"
#include "support/TemporaryFolder.h"
#include "support/TestProcess.h"

#include <algorithm>
#include <filesystem>
#include <gmock/gmock.h>
#include <unistd.h>

namespace tarnvale {
namespace {

using testing::HasSubstr;
using testing::SizeIs;
using testing::StartsWith;

/// The record that `server` must have on `port`, as its only one, whatever it is called.
void expectKnownService(const ListeningPort &record, const std::string &command, Pid pid) {
    EXPECT_EQ(record.command, command);
    EXPECT_EQ(record.pid, pid);
    EXPECT_TRUE(isKnownServiceCommand(record.command));
    EXPECT_TRUE(isDevPort(record));
    EXPECT_FALSE(record.isExposed);
    EXPECT_EQ(record.service, std::nullopt);
    EXPECT_GT(record.memoryKB.value_or(0), 1000);
}

/// PostgreSQL's programs lie in a folder for each version; the newest one that has `name`.
std::string findPostgres(const std::string &name) {
    std::vector<std::string> found;
    std::error_code ignored;
    for (const auto &version : std::filesystem::directory_iterator("/usr/lib/postgresql", ignored))
        if (access((version.path() / "bin" / name).c_str(), X_OK) == 0)
            found.push_back(version.path() / "bin" / name);
    std::sort(found.begin(), found.end());
    return found.empty() ? findProgram(name).value_or("") : found.back();
}

TEST(RealKnownServicesTest, postgresIsOneRecordUnderItsPostmaster) {
    const std::string initdb = findPostgres("initdb");
    const std::string postgres = findPostgres("postgres");
    if (initdb.empty() || postgres.empty())
        GTEST_SKIP() << "postgresql is not installed";
    const TemporaryFolder temporary;
    const std::string cluster = temporary.path("orders");
    std::filesystem::create_directories(cluster);
    ProcessSetup setup{.folder = cluster};
    if (getuid() == 0) { // PostgreSQL refuses to run for root
        setup.user = nobody;
        ASSERT_EQ(chown(temporary.path().c_str(), nobody, nobody), 0);
        ASSERT_EQ(chown(cluster.c_str(), nobody, nobody), 0);
    }
    RealProcess initialisation({initdb, "--no-sync", "--no-locale", "--auth=trust", "-D", cluster}, setup);
    ASSERT_TRUE(eventually([&] { return !isAlive(initialisation.pid()); }, std::chrono::seconds(20)))
        << initialisation.output();

    const ReservedPort port;
    const RealProcess server({postgres, "-D", cluster, "-p", port.text(), "-c", "listen_addresses=127.0.0.1",
                              "-c", "unix_socket_directories=" + cluster, "-c", "fsync=off"},
                             setup);
    ASSERT_TRUE(awaitListeners(port.number())) << initialisation.output() << server.output();
    // Its helpers come a moment later. None of them may take the record over.
    ASSERT_TRUE(eventually([&] { return descendantsOf(server.pid()).size() >= 3; })) << server.output();

    const auto records = scanPort(port.number());
    ASSERT_THAT(records, SizeIs(1));
    expectKnownService(records.front(), "postgres", server.pid());
    EXPECT_EQ(records.front().cwd, std::filesystem::canonical(cluster));
    EXPECT_THAT(records.front().args.value_or(""),
                StartsWith(postgres + " -D " + cluster + " -p " + port.text()));
}

TEST(RealKnownServicesTest, redisShowsEvenInTheRootFolder) {
    TARNVALE_NEEDS_PROGRAM(redis, "redis-server");
    const ReservedPort port;
    const RealProcess server(
        {redis, "--port", port.text(), "--bind", "127.0.0.1", "--save", "", "--dir", "/"}, {.folder = "/"});
    ASSERT_TRUE(awaitListeners(port.number())) << server.output();
    const auto records = scanPort(port.number());
    ASSERT_THAT(records, SizeIs(1));
    expectKnownService(records.front(), "redis-server", server.pid());
    EXPECT_EQ(records.front().cwd, "/");
    EXPECT_FALSE(records.front().hasProject());
    EXPECT_EQ(records.front().title(), "redis-server");
    // It rewrites its own command line, with blanks after the end.
    EXPECT_THAT(records.front().args.value_or(""), HasSubstr("127.0.0.1:" + port.text()));
    EXPECT_THAT(rowsOf(tarnctl({"ports"}).output, port.number()), SizeIs(1));
}

TEST(RealKnownServicesTest, nginxWithWorkersIsOneRecordUnderItsMaster) {
    TARNVALE_NEEDS_PROGRAM(nginx, "nginx");
    const TemporaryFolder temporary;
    const ReservedPort port;
    std::filesystem::create_directories(temporary.path("shop"));
    const std::string folder = temporary.path();
    std::string config = "daemon off; worker_processes 3; error_log stderr; pid " + folder +
                         "/pid;\n"
                         "events { worker_connections 16; }\nhttp { access_log off; ";
    for (const char *kind : {"client_body", "proxy", "fastcgi", "uwsgi", "scgi"})
        config += std::string(kind) + "_temp_path " + folder + "/" + kind + "; ";
    config += "server { listen 127.0.0.1:" + port.text() + "; } }\n";
    temporary.write("nginx.conf", config);
    const RealProcess server({nginx, "-e", "stderr", "-p", folder, "-c", folder + "/nginx.conf"},
                             {.folder = temporary.path("shop")});
    ASSERT_TRUE(awaitListeners(port.number())) << server.output();
    ASSERT_TRUE(eventually([&] { return descendantsOf(server.pid()).size() == 3; })) << server.output();
    // Pids may have wrapped around in between; the lowest counts.
    std::vector<Pid> pids = descendantsOf(server.pid());
    pids.push_back(server.pid());

    const auto records = scanPort(port.number());
    ASSERT_THAT(records, SizeIs(1));
    expectKnownService(records.front(), "nginx", *std::min_element(pids.begin(), pids.end()));
    EXPECT_THAT(records.front().args.value_or(""), StartsWith("nginx: "));
    EXPECT_EQ(records.front().title(), "shop");
}

} // namespace
} // namespace tarnvale
