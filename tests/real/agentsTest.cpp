#include "real/RealProcess.h"
#include "real/servers.h"
#include "support/TemporaryFolder.h"
#include "support/TestProcess.h"

#include <filesystem>
#include <gmock/gmock.h>

namespace tarnvale {
namespace {

using testing::SizeIs;

/// Starts `words` with a port behind them, waits until something listens there, and returns its agent.
std::optional<std::string> agentAbove(std::vector<std::string> words) {
    const ReservedPort port;
    words.push_back(port.text());
    const RealProcess process(words);
    if (!awaitListeners(port.number())) {
        ADD_FAILURE() << "nothing listens: " << process.output();
        return std::nullopt;
    }
    const auto records = scanPort(port.number());
    EXPECT_THAT(records, SizeIs(1));
    return records.empty() ? std::nullopt : records.front().agent;
}

class RealAgentsTest : public testing::Test {
protected:
    void SetUp() override {
        TARNVALE_NEEDS_PROGRAM(pythonFound, "python3");
        TARNVALE_NEEDS_PROGRAM(nodeFound, "node");
        node = nodeFound;
        python = pythonFound;
        shellBody = "\"" + python + "\" -m http.server --bind 127.0.0.1 \"$1\" &\nwait";
        nodeBody =
            "require('child_process').spawn('" + python +
            "', ['-m', 'http.server', '--bind', '127.0.0.1', process.argv.at(-1)], {stdio: 'inherit'});\n";
    }

    TemporaryFolder temporary;
    std::string node;
    std::string python;
    std::string shellBody; ///< a shell script that starts the server as its child
    std::string nodeBody;  ///< the same in Node
};

TEST_F(RealAgentsTest, aProgramOfThatNameIsTheAgent) {
    EXPECT_EQ(agentAbove({temporary.writeScript("claude", shellBody)}), "Claude Code");
    EXPECT_EQ(agentAbove({temporary.writeScript("codex", shellBody)}), "Codex");
}

TEST_F(RealAgentsTest, aScriptThatNodeRunsIsTheAgentByItsNameOrPath) {
    const std::string codex = "lib/node_modules/@openai/codex/bin/codex.js";
    const std::string claude = "opt/tools/claude-code/cli.js";
    EXPECT_EQ(agentAbove({node, temporary.write(codex, nodeBody)}), "Codex");
    EXPECT_EQ(agentAbove({node, temporary.write(claude, nodeBody)}), "Claude Code");
    EXPECT_EQ(agentAbove({node, temporary.write("bin/claude", nodeBody)}), "Claude Code");
    EXPECT_EQ(agentAbove({node, "--no-warnings", temporary.write("bin/codex", nodeBody)}), "Codex");
}

TEST_F(RealAgentsTest, theNearestAgentWins) {
    const std::string inner = temporary.writeScript("codex", shellBody);
    EXPECT_EQ(agentAbove({temporary.writeScript("claude", "\"" + inner + "\" \"$1\" &\nwait")}), "Codex");
}

TEST_F(RealAgentsTest, otherProgramsAreNoAgents) {
    // Whoever runs the tests may do it under an agent: then that one is the answer.
    const auto usual = agentAbove({python, "-m", "http.server", "--bind", "127.0.0.1"});
    const std::string script =
        temporary.write("claude.py", "import subprocess, sys\nsubprocess.run([sys.executable, "
                                     "'-m', 'http.server', '--bind', '127.0.0.1', "
                                     "sys.argv[-1]])\n");
    EXPECT_EQ(agentAbove({python, script}), usual);
    EXPECT_EQ(agentAbove({temporary.writeScript("claude-helper", shellBody)}), usual);
    EXPECT_EQ(agentAbove({node, temporary.write("codex.js", nodeBody)}), usual);
    EXPECT_EQ(agentAbove({node, temporary.write("server.js", nodeBody), "one", "two", "claude"}), usual);
}

} // namespace
} // namespace tarnvale
