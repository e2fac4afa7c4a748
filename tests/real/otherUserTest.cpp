#include "real/RealProcess.h"
#include "real/scanAs.h"
#include "real/servers.h"
#include "support/TemporaryFolder.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <unistd.h>

namespace tarnvale {
namespace {

using testing::IsEmpty;
using testing::SizeIs;

/// A user who is neither root nor `nobody`.
constexpr uid_t somebody = 65533;

/// Servers of one user, seen by another.
class RealOtherUserTest : public testing::Test {
protected:
    void SetUp() override {
        TARNVALE_NEEDS_PROGRAM(found, "python3");
        if (getuid() != 0)
            GTEST_SKIP() << "only root can become another user";
        python = found;
        std::filesystem::permissions(temporary.path(), std::filesystem::perms(0755));
        std::filesystem::create_directories(temporary.path("shop"));
    }

    [[nodiscard]] ProcessSetup as(uid_t user) const {
        return {.folder = temporary.path("shop"), .user = user};
    }

    [[nodiscard]] std::vector<std::string> words() const {
        return {python, "-m", "http.server", "--bind", "127.0.0.1", port.text()};
    }

    TemporaryFolder temporary;
    ReservedPort port;
    std::string python;
};

TEST_F(RealOtherUserTest, onesOwnServersAreSeenWhole) {
    const RealProcess server(words(), as(nobody));
    ASSERT_TRUE(awaitListeners(port.number())) << server.output();
    const auto records = scanPortAs(nobody, port.number());
    ASSERT_THAT(records, SizeIs(1));
    EXPECT_EQ(records.front().pid, server.pid());
    EXPECT_EQ(records.front().command, "python3");
    EXPECT_EQ(records.front().args, python + " -m http.server --bind 127.0.0.1 " + port.text());
    EXPECT_EQ(records.front().cwd, std::filesystem::canonical(temporary.path("shop")));
}

TEST_F(RealOtherUserTest, onesOwnServersAreStopped) {
    RealProcess server(words(), as(nobody));
    ASSERT_TRUE(awaitListeners(port.number())) << server.output();
    EXPECT_EQ(tarnctlAs(nobody, {"kill", port.text()}),
              "Stopped python3 (PID " + std::to_string(server.pid()) + ") on :" + port.text() + ".\n");
    EXPECT_TRUE(server.waitForEnd());
}

TEST_F(RealOtherUserTest, rootSeesThemAll) {
    const RealProcess server(words(), as(somebody));
    ASSERT_TRUE(awaitListeners(port.number())) << server.output();
    const auto records = scanPort(port.number());
    ASSERT_THAT(records, SizeIs(1));
    EXPECT_EQ(records.front().pid, server.pid());
    EXPECT_EQ(records.front().cwd, std::filesystem::canonical(temporary.path("shop")));
}

/// What isn't in a service has no owner that could be told for certain.
TEST_F(RealOtherUserTest, anothersPlainServersAreLeftOut) {
    if (readFile("/proc/self/cgroup").find(".service") != std::string::npos)
        GTEST_SKIP() << "these tests run in a service, and so do their servers";
    for (const uid_t owner : {uid_t(0), somebody}) {
        const RealProcess server(words(), as(owner));
        ASSERT_TRUE(awaitListeners(port.number())) << server.output();
        EXPECT_THAT(scanPortAs(nobody, port.number()), IsEmpty());
        EXPECT_EQ(tarnctlAs(nobody, {"kill", port.text()}),
                  "Nothing is listening on :" + port.text() + ".\n");
        EXPECT_NE(httpGet(port.number()), std::nullopt);
    }
}

} // namespace
} // namespace tarnvale
