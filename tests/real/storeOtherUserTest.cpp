// The store of one user on what belongs to another.

#include "real/RealProcess.h"
#include "real/scanAs.h"
#include "real/servers.h"
#include "support/TemporaryFolder.h"
#include "support/TestProcess.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <unistd.h>

namespace tarnvale {
namespace {

using testing::HasSubstr;
using testing::Not;

/// The program that drives the store, run by a user who owns nothing.
class RealOtherUserStoreTest : public testing::Test {
protected:
    void SetUp() override {
        TARNVALE_NEEDS_PROGRAM(foundPython, "python3");
        TARNVALE_NEEDS_PROGRAM(foundShell, "bash");
        if (getuid() != 0)
            GTEST_SKIP() << "only root can become another user";
        python = foundPython;
        shell = foundShell;
        std::filesystem::create_directories(folder.path("home"));
        std::filesystem::permissions(folder.path(), std::filesystem::perms(0755));
        std::filesystem::permissions(folder.path("home"), std::filesystem::perms(0777));
        static_cast<void>(copy(DRIVE_STORE, "drive-store"));
    }

    /// A copy that any user can run.
    [[nodiscard]] std::string copy(const std::string &program, const std::string &name) const {
        const std::string path = folder.path(name);
        std::filesystem::copy_file(std::filesystem::canonical(program), path);
        std::filesystem::permissions(path, std::filesystem::perms(0755));
        return path;
    }

    /// Asks the store for `line` again and again, since its first scan takes a moment.
    [[nodiscard]] std::vector<std::string> driveWith(const std::string &line) const {
        return {shell, "-c", "while echo '" + line + "'; do sleep 0.2; done | " + folder.path("drive-store")};
    }

    [[nodiscard]] ProcessSetup asNobody() const {
        return {.folder = folder.path("home"),
                .environment = {"HOME=" + folder.path("home"), "PATH=/usr/bin:/bin"},
                .hasOnlyThatEnvironment = true,
                .user = nobody};
    }

    TemporaryFolder folder;
    ReservedPort port;
    std::string python;
    std::string shell;
};

/// The one kind of server that is listed though it is another's and in no service.
TEST_F(RealOtherUserStoreTest, aStopThatTheSystemRefusesIsTold) {
    const std::string proxy = copy(python, "docker-proxy");
    const RealProcess server({proxy, "-c",
                              "import http.server as h\n"
                              "h.HTTPServer(('127.0.0.1', " +
                                  port.text() + "), h.SimpleHTTPRequestHandler).serve_forever()",
                              "-proto", "tcp", "-host-ip", "127.0.0.1", "-host-port", port.text()});
    ASSERT_TRUE(awaitListeners(port.number())) << server.output();
    RealProcess driver(driveWith("stop " + port.text()), asNobody());
    const std::string refusal =
        "error: No permission to stop docker-proxy (PID " + std::to_string(server.pid()) + ").\n";
    EXPECT_TRUE(eventually([&] { return driver.output().find(refusal) != std::string::npos; }))
        << driver.output();
    EXPECT_THAT(driver.output(), Not(HasSubstr("error: none"))) << "it stays";
    EXPECT_TRUE(isAlive(server.pid()));
    EXPECT_NE(httpGet(port.number()), std::nullopt);
}

} // namespace
} // namespace tarnvale
