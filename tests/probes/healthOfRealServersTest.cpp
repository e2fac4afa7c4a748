#include "probes/HealthCheck.h"

#include "real/servers.h"
#include "support/ManualClock.h"
#include "support/TemporaryFolder.h"
#include "support/TestProcess.h"

#include <gtest/gtest.h>

#include <unistd.h>

namespace tarnvale {
namespace {

using namespace std::chrono_literals;

HealthCheck::Result check(const ReservedPort &port, const std::string &path) {
    const auto future = HealthCheck::check(port.number(), path, 20s);
    EXPECT_TRUE(waitFor([&] { return future.isFinished(); }, 30s));
    return future.isFinished() ? future.result() : HealthCheck::Result();
}

TEST(HealthOfRealServersTest, pythonsOwnServer) {
    const std::string python = "/usr/bin/python3";
    if (access(python.c_str(), X_OK) != 0)
        GTEST_SKIP() << "no " << python;
    const TemporaryFolder folder;
    folder.write("index.html", "hello");
    for (const std::string address : {"127.0.0.1", "::1"}) {
        if (address == "::1" && !hasIPv6())
            GTEST_SKIP() << "no IPv6 here";
        const ReservedPort port;
        const TestProcess server(
            {python, "-m", "http.server", port.text(), "--bind", address, "--directory", folder.path()});
        ASSERT_TRUE(awaitListeners(port.number()));
        EXPECT_EQ(check(port, "/").health, Health::responding(200)) << address;
        EXPECT_EQ(check(port, "/missing").health, Health::responding(404)) << address;
        EXPECT_TRUE(check(port, "/").milliseconds.has_value());
    }
}

TEST(HealthOfRealServersTest, nginx) {
    const std::string nginx = "/usr/sbin/nginx";
    if (access(nginx.c_str(), X_OK) != 0)
        GTEST_SKIP() << "no " << nginx;
    const TemporaryFolder folder;
    const ReservedPort port;
    const std::string config =
        folder.write("nginx.conf", "daemon off; master_process off; pid " + folder.path("pid") +
                                       "; error_log /dev/null;\n" + "events {}\nhttp { access_log off;\n" +
                                       "client_body_temp_path " + folder.path("a") + "; proxy_temp_path " +
                                       folder.path("b") + "; fastcgi_temp_path " + folder.path("c") +
                                       "; uwsgi_temp_path " + folder.path("d") + "; scgi_temp_path " +
                                       folder.path("e") + ";\n" + "server { listen 127.0.0.1:" + port.text() +
                                       "; location /up { return 204; } location /down { return 503; } } }\n");
    const TestProcess server({nginx, "-p", folder.path(), "-e", "/dev/null", "-c", config});
    ASSERT_TRUE(awaitListeners(port.number()));
    EXPECT_EQ(check(port, "/up").health, Health::responding(204));
    EXPECT_EQ(check(port, "/down").health, Health::serverError(503));
    EXPECT_EQ(check(port, "no slash").health.kind, Health::Kind::responding);
}

TEST(HealthOfRealServersTest, nothingAnswersOnceTheServerHasGone) {
    const ReservedPort port;
    EXPECT_EQ(check(port, "/").health, Health::unknown());
}

} // namespace
} // namespace tarnvale
