#include "discovery/isDevPort.h"
#include "discovery/linux/LinuxMachine.h"
#include "discovery/scanListeningPorts.h"
#include "real/DockerEngine.h"
#include "real/scanAs.h"
#include "real/servers.h"
#include "support/TestProcess.h"

#include <filesystem>
#include <gmock/gmock.h>

namespace tarnvale {
namespace {

using std::chrono::steady_clock;
using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::EndsWith;
using testing::Field;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Optional;
using testing::SizeIs;

/// One engine for all cases, and for each of them a container of its own with a published port.
class RealDockerTest : public testing::Test {
protected:
    static void SetUpTestSuite() { s_engine = new DockerEngine; }

    static void TearDownTestSuite() {
        delete s_engine;
        s_engine = nullptr;
    }

    void SetUp() override {
        if (!engine().problem().empty())
            GTEST_SKIP() << engine().problem();
        name = testing::UnitTest::GetInstance()->current_test_info()->name();
    }

    void TearDown() override {
        if (engine().problem().empty())
            engine().remove(name);
    }

    [[nodiscard]] static DockerEngine &engine() { return *s_engine; }

    /// Publishes on 127.0.0.1.
    [[nodiscard]] bool publish() { return engine().serve(name, "127.0.0.1:" + port.text() + ":80"); }

    [[nodiscard]] std::string description() const { return name + " · web:1.0"; }

    [[nodiscard]] std::string refusal(const std::string &advice) const {
        return "docker-proxy on :" + port.text() +
               " is Docker's port proxy — stop the container with: " + advice + "\n";
    }

    [[nodiscard]] std::string unnamedRefusal() const {
        return refusal("docker ps, then docker stop <container>");
    }

    ReservedPort port;
    std::string name;

private:
    static DockerEngine *s_engine;
};

DockerEngine *RealDockerTest::s_engine = nullptr;

TEST_F(RealDockerTest, aPublishedPortIsItsContainer) {
    ASSERT_TRUE(publish());
    const auto records = scanPort(port.number());
    ASSERT_THAT(records, SizeIs(1));
    const ListeningPort &record = records.front();
    EXPECT_EQ(record.command, "docker-proxy");
    EXPECT_TRUE(record.isDockerProxy());
    EXPECT_EQ(record.container, description());
    EXPECT_EQ(record.containerName(), name);
    EXPECT_EQ(record.title(), description());
    EXPECT_FALSE(record.isExposed);
    EXPECT_TRUE(isDevPort(record));
    EXPECT_EQ(record.service, std::nullopt);
    EXPECT_EQ(record.hostApp, std::nullopt);
    EXPECT_THAT(record.args.value_or(""), HasSubstr("-host-port " + port.text()));
    EXPECT_THAT(rowsOf(tarnctl({"ports"}).output, port.number()), ElementsAre(EndsWith(" docker-proxy")));
}

TEST_F(RealDockerTest, theProxiesOfBothAddressFamiliesAreOneExposedRecord) {
    ASSERT_TRUE(engine().serve(name, port.text() + ":80"));
    ASSERT_EQ(listenerCount(port.number()), hasIPv6() ? 2u : 1u);
    const auto records = scanPort(port.number());
    ASSERT_THAT(records, SizeIs(1));
    EXPECT_EQ(records.front().container, description());
    EXPECT_TRUE(records.front().isExposed);
    EXPECT_THAT(rowsOf(tarnctl({"ports"}).output, port.number()),
                ElementsAre(EndsWith("docker-proxy  [network]")));
}

TEST_F(RealDockerTest, stoppingGivesAdviceAndStopsNothing) {
    ASSERT_TRUE(publish());
    const ProgramRun run = tarnctl({"kill", port.text()});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.output, refusal("docker stop " + name));
    EXPECT_EQ(run.error, "");
    EXPECT_EQ(httpGet(port.number()), DockerEngine::page);
}

TEST_F(RealDockerTest, anEngineThatHangsLeavesTheContainerEmptyInTime) {
    ASSERT_TRUE(publish());
    const auto before = steady_clock::now();
    EXPECT_THAT(scanPort(port.number()),
                ElementsAre(Field(&ListeningPort::container, Optional(description()))));
    const auto usual = steady_clock::now() - before;

    engine().setHanging(true);
    const auto start = steady_clock::now();
    const auto records = scanPort(port.number());
    const auto taken = steady_clock::now() - start;
    const ProgramRun run = tarnctl({"kill", port.text()});
    engine().setHanging(false);

    ASSERT_THAT(records, SizeIs(1));
    EXPECT_EQ(records.front().container, std::nullopt);
    EXPECT_TRUE(records.front().isDockerProxy());
    EXPECT_LT(taken, 4s + 2 * usual);
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.output, unnamedRefusal());
    EXPECT_EQ(httpGet(port.number()), DockerEngine::page);
}

TEST_F(RealDockerTest, aContainerThatTakesAPortOverIsNamedInTheNextScan) {
    LinuxMachine machine;
    ASSERT_TRUE(publish());
    EXPECT_THAT(scanPort(machine, port.number()),
                ElementsAre(Field(&ListeningPort::container, Optional(description()))));
    engine().remove(name);
    ASSERT_EQ(listenerCount(port.number()), 0u);
    EXPECT_THAT(scanPort(machine, port.number()), IsEmpty());
    name += "Again";
    ASSERT_TRUE(publish());
    EXPECT_THAT(scanPort(machine, port.number()),
                ElementsAre(Field(&ListeningPort::container, Optional(description()))));
}

TEST_F(RealDockerTest, anotherUserSeesTheProxyAndWithoutTheEngineNoName) {
    ASSERT_TRUE(publish());
    const auto records = scanPortAs(nobody, port.number());
    ASSERT_THAT(records, SizeIs(1));
    EXPECT_EQ(records.front().command, "docker-proxy");
    EXPECT_TRUE(records.front().isDockerProxy());
    EXPECT_EQ(records.front().container, std::nullopt);
    EXPECT_FALSE(records.front().isExposed);
    EXPECT_EQ(records.front().pid, scanPort(port.number()).front().pid);
    EXPECT_EQ(tarnctlAs(nobody, {"kill", port.text()}), unnamedRefusal());
    EXPECT_EQ(httpGet(port.number()), DockerEngine::page);
}

TEST_F(RealDockerTest, anotherUserWhoMayAskTheEngineSeesTheName) {
    using std::filesystem::perms;
    ASSERT_TRUE(publish());
    std::filesystem::permissions(engine().socketPath(), perms(0666));
    std::filesystem::permissions(std::filesystem::path(engine().socketPath()).parent_path(), perms(0755));
    EXPECT_THAT(scanPortAs(nobody, port.number()),
                ElementsAre(Field(&ListeningPort::container, Optional(description()))));
    EXPECT_EQ(tarnctlAs(nobody, {"kill", port.text()}), refusal("docker stop " + name));
}

} // namespace
} // namespace tarnvale
