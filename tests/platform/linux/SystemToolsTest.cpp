#include "platform/linux/SystemTools.h"

#include "discovery/docker.h"
#include "discovery/text.h"
#include "support/ManualClock.h"
#include "support/TemporaryFolder.h"
#include "support/TestProcess.h"

#include <QCoreApplication>
#include <QTimer>

#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>

namespace tarnvale {
namespace {

using namespace std::chrono_literals;

class SystemToolsTest : public testing::Test {
protected:
    ~SystemToolsTest() override {
        m_tool.reset();
        killMarked(m_leftBehind, "sleep");
        settle();
    }

    /// Starts a shell script and gathers what it says.
    void start(const std::string &body) {
        const auto tool = m_tools.start(
            m_folder.writeScript("tool", body), {"first", "second"},
            [this](const std::string &text) {
                EXPECT_EQ(m_ends, 0) << "the end comes last";
                m_output += text;
            },
            [this] { ++m_ends; });
        ASSERT_TRUE(tool);
        m_tool = *tool;
    }
    /// The tools that are still read.
    static qsizetype readers() { return QCoreApplication::instance()->children().size(); }
    [[nodiscard]] bool awaitEnd() const {
        return waitFor([this] { return m_ends > 0; }, 20s);
    }

    TemporaryFolder m_folder;
    SystemTools m_tools{{m_folder.path("first"), m_folder.path("second")}};
    std::shared_ptr<RunningTool> m_tool;
    std::string m_output;
    int m_ends = 0;
    Pid m_leftBehind = -1;
};

TEST_F(SystemToolsTest, theFirstFolderWithTheToolCounts) {
    EXPECT_EQ(m_tools.find("docker"), std::nullopt);
    const std::string second = m_folder.writeScript("second/docker", "true");
    EXPECT_EQ(m_tools.find("docker"), second);
    m_folder.write("first/docker", "not executable");
    EXPECT_EQ(m_tools.find("docker"), second);
    std::filesystem::remove(m_folder.path("first/docker"));
    const std::string first = m_folder.writeScript("first/docker", "true");
    EXPECT_EQ(m_tools.find("docker"), first);
    EXPECT_EQ(m_tools.find("ngrok"), std::nullopt);
    EXPECT_EQ(m_tools.find(""), std::nullopt) << "a folder is no tool";
}

TEST_F(SystemToolsTest, theStandardFoldersAreThoseOfTheSystem) {
    const SystemTools tools;
    EXPECT_EQ(tools.find("docker"), dockerPath());
    const char *home = std::getenv("HOME");
    const std::string saved = home != nullptr ? home : "";
    setenv("HOME", m_folder.path().c_str(), 1);
    const std::string own = m_folder.writeScript(".local/bin/tarnvale-test-tool", "true");
    EXPECT_EQ(tools.find("tarnvale-test-tool"), own);
    if (home != nullptr)
        setenv("HOME", saved.c_str(), 1);
    else
        unsetenv("HOME");
}

TEST_F(SystemToolsTest, runningWaitsForTheOutput) {
    const std::string tool = m_folder.writeScript("tool", "echo \"out $1\"; echo err >&2");
    EXPECT_EQ(m_tools.run({.path = tool, .arguments = {"a b"}}), "out a b\n");
    EXPECT_EQ(m_tools.run({.path = tool, .mergesError = true}), "out \nerr\n");
    EXPECT_EQ(m_tools.run({.path = m_folder.path("missing")}), "");
}

TEST_F(SystemToolsTest, bothStreamsComeInOrderAndThenTheEnd) {
    start("echo \"$1 $2\"; echo err >&2; echo last; read -r line || echo 'no input'");
    EXPECT_TRUE(awaitEnd());
    EXPECT_EQ(m_output, "first second\nerr\nlast\nno input\n");
    settle();
    EXPECT_EQ(m_ends, 1);
    m_tool->terminate();
}

TEST_F(SystemToolsTest, outputComesWhileTheToolRuns) {
    start("echo ready; while [ ! -e " + m_folder.path("go") + " ]; do sleep 0.02; done; echo done");
    EXPECT_TRUE(waitFor([&] { return m_output == "ready\n"; }));
    EXPECT_EQ(m_ends, 0);
    m_folder.write("go", "");
    EXPECT_TRUE(awaitEnd());
    EXPECT_EQ(m_output, "ready\ndone\n");
}

TEST_F(SystemToolsTest, aSilentToolOnlyEnds) {
    start("exit 1");
    EXPECT_TRUE(awaitEnd());
    EXPECT_EQ(m_output, "");
}

TEST_F(SystemToolsTest, whatCantBeStartedIsToldInWords) {
    const auto tool = m_tools.start(
        m_folder.path("missing"), {}, [](const std::string &) {}, [] {});
    ASSERT_FALSE(tool);
    EXPECT_EQ(tool.error(), "No such file or directory");
}

TEST_F(SystemToolsTest, aCharacterThatComesInTwoReadsIsWhole) {
    start("printf 'caf\\303'; while [ ! -e " + m_folder.path("go") +
          " ]; do sleep 0.02; done; printf '\\251 \\360\\237'");
    EXPECT_TRUE(waitFor([&] { return m_output == "caf"; }));
    m_folder.write("go", "");
    EXPECT_TRUE(awaitEnd());
    EXPECT_EQ(m_output, "café \uFFFD") << "what never became whole is repaired";
}

TEST_F(SystemToolsTest, theEndOfTheOutputIsNotTheEnd) {
    start("echo bye; exec >&- 2>&-; while [ ! -e " + m_folder.path("go") + " ]; do sleep 0.02; done");
    EXPECT_TRUE(waitFor([&] { return m_output == "bye\n"; }));
    settle();
    EXPECT_EQ(m_ends, 0);
    m_folder.write("go", "");
    EXPECT_TRUE(awaitEnd());
}

TEST_F(SystemToolsTest, aChildLeftBehindWithTheOutputIsNotWaitedFor) {
    start("sleep 61 & echo $! >" + m_folder.path("pid") + "; echo last words");
    EXPECT_TRUE(awaitEnd());
    EXPECT_EQ(m_output, "last words\n");
    m_leftBehind = awaitPid(m_folder.path("pid"));
    EXPECT_TRUE(isAlive(m_leftBehind));
}

TEST_F(SystemToolsTest, aFloodLeavesTheEventLoopItsTurn) {
    std::size_t most = 0;
    std::size_t total = 0;
    int turns = 0;
    const auto tool = m_tools.start(
        m_folder.writeScript("tool", "exec head -c 8000000 /dev/zero"), {},
        [&](const std::string &text) {
            most = std::max(most, text.size());
            total += text.size();
        },
        [this] { ++m_ends; });
    ASSERT_TRUE(tool);
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] { turns += m_ends == 0 ? 1 : 0; });
    timer.start(0);
    EXPECT_TRUE(awaitEnd());
    EXPECT_EQ(total, 8'000'000U) << "nothing is lost";
    EXPECT_LE(most, 65536U);
    EXPECT_GT(turns, 2);
}

TEST_F(SystemToolsTest, terminatingEndsIt) {
    start("echo ready; while :; do sleep 0.05; done");
    EXPECT_TRUE(waitFor([&] { return m_output == "ready\n"; }));
    m_tool->terminate();
    EXPECT_TRUE(awaitEnd());
}

TEST_F(SystemToolsTest, whoIsLetGoGoesOnUnheard) {
    const qsizetype before = readers();
    start("echo ready; while [ ! -e " + m_folder.path("go") + " ]; do sleep 0.02; done\n" +
          "i=0; while [ $i -lt 20000 ]; do echo 'more than a pipe holds'; i=$((i+1)); done; echo end >" +
          m_folder.path("done"));
    EXPECT_TRUE(waitFor([&] { return m_output == "ready\n"; }));
    m_tool.reset();
    m_folder.write("go", "");
    EXPECT_TRUE(waitFor([&] { return readFile(m_folder.path("done")) == "end\n"; }, 20s))
        << "it neither waits for a reader nor ends for want of one";
    EXPECT_EQ(m_output, "ready\n");
    EXPECT_TRUE(waitFor([&] { return readers() == before; }));
    EXPECT_EQ(m_ends, 0);
}

TEST_F(SystemToolsTest, theToolMayBeLetGoFromItsOwnCalls) {
    const qsizetype before = readers();
    auto tool = m_tools.start(
        m_folder.writeScript("tool", "echo one; sleep 0.1; echo two"), {},
        [this](const std::string &text) {
            m_output += text;
            m_tool.reset();
            m_output += "!";
        },
        [this] { ++m_ends; });
    ASSERT_TRUE(tool);
    m_tool = std::move(*tool);
    EXPECT_TRUE(waitFor([&] { return readers() == before; }));
    EXPECT_EQ(m_output, "one\n!");
    EXPECT_EQ(m_ends, 0);
}

} // namespace
} // namespace tarnvale
