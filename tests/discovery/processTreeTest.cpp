#include "discovery/processTree.h"

#include "support/FakeMachine.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>

namespace tarnvale {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

TEST(ProcessTreeTest, aWholeTableIsRead) {
    const ProcessTable table =
        parseProcessTable(readRecording(TARNVALE_TESTS_FOLDER, "discovery", "ps-table.txt"));
    EXPECT_EQ(table.size(), 10u);
    EXPECT_EQ(table.at(1), (ProcessNode{0, "/sbin/launchd"}));
    EXPECT_EQ(table.at(611), (ProcessNode{610, "-zsh"}));
    EXPECT_EQ(table.at(4488).path,
              "/Applications/Code.app/Contents/Frameworks/Code Helper (Plugin).app/Contents/"
              "MacOS/Code Helper (Plugin)");
}

TEST(ProcessTreeTest, innerAndTrailingBlanksStayInThePath) {
    EXPECT_EQ(parseProcessTable("  42\t 1   /My  App/x \n").at(42), (ProcessNode{1, "/My  App/x "}));
}

TEST(ProcessTreeTest, linesWithoutAllThreeColumnsAreDropped) {
    struct Row {
        std::string_view line;
        std::string_view reason;
    };
    constexpr std::array rows{
        Row{"", "empty"},
        Row{"   ", "blanks"},
        Row{"42", "one column"},
        Row{"42 1", "two columns"},
        Row{"42 1   ", "two columns and blanks"},
        Row{"x 1 /bin/sh", "a pid that is no number"},
        Row{"42 x /bin/sh", "a parent that is no number"},
        Row{"4294967296 1 /bin/sh", "a pid beyond 32 bits"},
        Row{"PID PPID COMM", "a header"},
    };
    for (const Row &row : rows)
        EXPECT_THAT(parseProcessTable(row.line), IsEmpty()) << row.reason;
}

TEST(ProcessTreeTest, aTableCutAtAnyByteIsNoMoreThanTheWhole) {
    const std::string whole = readRecording(TARNVALE_TESTS_FOLDER, "discovery", "ps-table.txt");
    for (std::size_t size = 0; size <= whole.size(); ++size)
        ASSERT_LE(parseProcessTable(std::string(whole, 0, size)).size(), 10u) << size;
}

TEST(ProcessTreeTest, aChainGoesUpToTheFirstProcess) {
    const ProcessTable table{{1, {0, "init"}}, {10, {1, "a"}}, {20, {10, "b"}}, {30, {20, "c"}}};
    EXPECT_THAT(ancestorChain(30, table), ElementsAre(30, 20, 10));
    EXPECT_THAT(ancestorChain(10, table), ElementsAre(10));
}

TEST(ProcessTreeTest, pidsBelowTwoHaveNoChain) {
    const ProcessTable table{{1, {0, "init"}}, {0, {0, "kernel"}}, {-5, {1, "x"}}};
    for (const Pid pid : {1, 0, -5})
        EXPECT_THAT(ancestorChain(pid, table), IsEmpty()) << pid;
}

TEST(ProcessTreeTest, aChainEndsWhereTheTableDoes) {
    EXPECT_THAT(ancestorChain(30, {{30, {20, "c"}}, {10, {1, "a"}}}), ElementsAre(30));
    EXPECT_THAT(ancestorChain(40, {{30, {20, "c"}}}), IsEmpty());
    EXPECT_THAT(ancestorChain(30, {{30, {-1, "c"}}}), ElementsAre(30));
}

TEST(ProcessTreeTest, aCycleEndsAtSixtyFour) {
    EXPECT_EQ(ancestorChain(10, {{10, {20, "a"}}, {20, {10, "b"}}}).size(), 64u);
    EXPECT_EQ(ancestorChain(10, {{10, {10, "a"}}}).size(), 64u);
}

TEST(ProcessTreeTest, aLongChainEndsAtSixtyFour) {
    ProcessTable table;
    for (Pid pid = 2; pid < 102; ++pid)
        table[pid] = {pid - 1, "sh"};
    EXPECT_EQ(ancestorChain(65, table).size(), 64u);
    EXPECT_EQ(ancestorChain(66, table).size(), 64u);
    EXPECT_EQ(ancestorChain(66, table).back(), 3);
}

/// A port of process 42, whose ancestors the test names, nearest first, by their paths.
class AttributionTest : public testing::Test {
protected:
    AttributionTest() { m_machine.add({.pid = 42, .path = "/usr/bin/python"}); }

    void setAncestors(const std::vector<std::string> &paths) {
        Pid pid = 42;
        for (const std::string &path : paths) {
            m_machine.processes[pid].ppid = pid - 1;
            m_machine.add({.pid = --pid, .path = path});
        }
    }

    ListeningPort attributed(ListeningPort port) {
        std::vector<ListeningPort> ports{std::move(port)};
        attributeProcessTree(ports, m_machine);
        return ports.front();
    }

    ListeningPort attributed() { return attributed({.pid = 42, .command = "node", .port = 3000}); }

    FakeMachine m_machine;
};

const std::string terminal = "/Applications/Terminal.app/Contents/MacOS/Terminal";

TEST_F(AttributionTest, agentAndHostAreFoundAmongTheAncestors) {
    setAncestors({"/opt/bin/claude", "/bin/zsh", terminal});
    EXPECT_EQ(attributed().agent, "Claude Code");
    EXPECT_EQ(attributed().hostApp, "/Applications/Terminal.app");
}

TEST_F(AttributionTest, theNearestAgentWins) {
    setAncestors({"/bin/sh", "codex", "claude"});
    EXPECT_EQ(attributed().agent, "Codex");
}

TEST_F(AttributionTest, theProcessItselfMayBeTheAgentButNeverTheHost) {
    m_machine.add({.pid = 42, .path = "/Applications/Claude.app/Contents/MacOS/claude"});
    EXPECT_EQ(attributed().agent, "Claude Code");
    EXPECT_EQ(attributed().hostApp, std::nullopt);
    m_machine.add({.pid = 42, .path = terminal});
    EXPECT_EQ(attributed().hostApp, std::nullopt);
}

TEST_F(AttributionTest, theNearestHostWins) {
    setAncestors({"/bin/zsh", "/Applications/Near.app/x", "/Applications/Far.app/x"});
    EXPECT_EQ(attributed().hostApp, "/Applications/Near.app");
}

TEST_F(AttributionTest, theOutermostBundleOfAPathIsTheHost) {
    setAncestors({"/Applications/Code.app/Contents/Frameworks/Code Helper.app/Contents/MacOS/Code Helper"});
    EXPECT_EQ(attributed().hostApp, "/Applications/Code.app");
}

TEST_F(AttributionTest, anAgentIsNeverAHost) {
    setAncestors({"/Applications/Agent.app/Contents/MacOS/codex", terminal});
    EXPECT_EQ(attributed().agent, "Codex");
    EXPECT_EQ(attributed().hostApp, "/Applications/Terminal.app");
}

TEST_F(AttributionTest, aSecondAgentIsNoHostEither) {
    setAncestors({"codex", "/Applications/Agent.app/Contents/MacOS/claude"});
    EXPECT_EQ(attributed().agent, "Codex");
    EXPECT_EQ(attributed().hostApp, std::nullopt);
}

TEST_F(AttributionTest, thisProgramIsNoHost) {
    setAncestors({"/bin/zsh", "/Applications/Tarnvale.app/Contents/MacOS/tarnvale"});
    EXPECT_EQ(attributed().hostApp, std::nullopt);
}

TEST_F(AttributionTest, anApplicationAboveThisProgramIsNotTheHostInstead) {
    setAncestors({"/Applications/Tarnvale.app/Contents/MacOS/tarnvale", terminal});
    EXPECT_EQ(attributed().hostApp, std::nullopt);
}

TEST_F(AttributionTest, aBundleThatOnlyResemblesOursIsAHost) {
    setAncestors({"/Users/me/Applications/Tarnvale.app/Contents/MacOS/tarnvale"});
    EXPECT_EQ(attributed().hostApp, "/Users/me/Applications/Tarnvale.app");
}

TEST_F(AttributionTest, servicesHaveAnAgentButNoHost) {
    setAncestors({"claude", terminal});
    const ListeningPort port = attributed({.pid = 42, .command = "node", .service = "com.example.agent"});
    EXPECT_EQ(port.agent, "Claude Code");
    EXPECT_EQ(port.hostApp, std::nullopt);
}

TEST_F(AttributionTest, proxiesHaveNoHost) {
    setAncestors({"claude", terminal});
    const ListeningPort port = attributed({.pid = 42, .command = "com.docker.backend"});
    EXPECT_EQ(port.agent, "Claude Code");
    EXPECT_EQ(port.hostApp, std::nullopt);
}

TEST_F(AttributionTest, withoutATableBothAreSetEmpty) {
    m_machine.hasProcessTable = false;
    const ListeningPort port =
        attributed({.pid = 42, .command = "node", .hostApp = "/Old.app", .agent = "Codex"});
    EXPECT_EQ(port.agent, std::nullopt);
    EXPECT_EQ(port.hostApp, std::nullopt);
}

TEST_F(AttributionTest, onlyRuntimesAreAskedForTheirCommandLine) {
    m_machine.add({.pid = 42, .path = "/usr/bin/node", .args = "node server.js"});
    setAncestors({"/usr/bin/BUN", "/usr/bin/python", "deno", "/bin/zsh"});
    static_cast<void>(attributed());
    EXPECT_THAT(m_machine.questions(), Contains("processDetails 39 41 42"));
    EXPECT_THAT(m_machine.questions(),
                ElementsAre("processTable 42", "processDetails 39 41 42", StartsWith("hostApplication"),
                            StartsWith("hostApplication"), StartsWith("hostApplication"),
                            StartsWith("hostApplication")));
}

TEST_F(AttributionTest, withoutARuntimeNoCommandLineIsAskedFor) {
    setAncestors({"/bin/zsh"});
    static_cast<void>(attributed());
    EXPECT_THAT(m_machine.questions(), Each(Not(StartsWith("processDetails"))));
}

TEST_F(AttributionTest, anAgentInARuntimesCommandLineIsFound) {
    setAncestors({"/usr/bin/node"});
    m_machine.processes[41].args = "node /opt/tools/claude-code/cli.js";
    EXPECT_EQ(attributed().agent, "Claude Code");
}

TEST_F(AttributionTest, aRuntimeThatCannotBeReadIsNoAgent) {
    setAncestors({"/usr/bin/node"});
    m_machine.processes[41].args = "node /opt/bin/claude";
    m_machine.processes[41].isReadable = false;
    EXPECT_EQ(attributed().agent, std::nullopt);
}

TEST_F(AttributionTest, anAncestorOfManyPortsIsJudgedOnce) {
    setAncestors({"/bin/zsh", terminal});
    m_machine.add({.pid = 43, .ppid = 41, .path = "/usr/bin/ruby"});
    std::vector<ListeningPort> ports{
        {.pid = 42, .port = 3000}, {.pid = 43, .port = 3001}, {.pid = 42, .port = 3002}};
    attributeProcessTree(ports, m_machine);
    for (const ListeningPort &port : ports)
        EXPECT_EQ(port.hostApp, "/Applications/Terminal.app");
    EXPECT_EQ(std::ranges::count(m_machine.questions(), "hostApplication 40"), 1);
}

TEST_F(AttributionTest, aCycleAmongTheAncestorsEnds) {
    setAncestors({"/bin/zsh"});
    m_machine.processes[41].ppid = 42;
    EXPECT_EQ(attributed().hostApp, std::nullopt);
}

} // namespace
} // namespace tarnvale
