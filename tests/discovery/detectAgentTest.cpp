#include "discovery/detectAgent.h"

#include <gtest/gtest.h>

#include <array>

namespace tarnvale {
namespace {

struct Row {
    std::string_view path;
    std::optional<std::string> args;
    std::string_view reason;
};

TEST(DetectAgentTest, theRuntimesAreNodeBunAndDeno) {
    for (const std::string_view path : {"node", "/usr/bin/node", "/opt/Bun", "/home/me/.deno/bin/deno"})
        EXPECT_TRUE(isNodeLike(path)) << path;
    for (const std::string_view path : {"", "/usr/bin/nodejs", "/node/python", "/usr/bin/node20", "bunx"})
        EXPECT_FALSE(isNodeLike(path)) << path;
}

TEST(DetectAgentTest, oneAgentIsFoundByNameOrScript) {
    const std::array rows{
        Row{"/usr/local/bin/claude", std::nullopt, "by its own name"},
        Row{"/usr/local/bin/Claude", "anything at all", "in any case"},
        Row{"/usr/bin/node", "node /opt/bin/claude", "a script of that name"},
        Row{"/usr/bin/node", "/opt/bin/claude", "as the first word"},
        Row{"bun", "bun run CLAUDE", "as the third word, in any case"},
        Row{"node", "node\t/opt/tools/claude-code/cli.js", "by the folder of the script"},
        Row{"DENO", "deno run /opt/Claude-Code/cli.js", "by the folder, in any case"},
        Row{"node", "node /opt/bin/codex /opt/bin/claude", "one agent wins over the other"},
        Row{"/opt/bin/claude", "codex", "only a runtime's words count"},
    };
    for (const Row &row : rows)
        EXPECT_EQ(detectAgent(row.path, row.args), "Claude Code") << row.reason;
}

TEST(DetectAgentTest, theOtherAgentIsFoundByNameOrScript) {
    const std::array rows{
        Row{"/opt/homebrew/bin/codex", "codex --help claude", "by its own name, whatever its arguments"},
        Row{"codex", std::nullopt, "without arguments"},
        Row{"node", "node /opt/bin/codex", "a script of that name"},
        Row{"node", "node /lib/node_modules/@openai/codex/bin/codex.js", "by the folder of the script"},
        Row{"bun", "bun x /Lib/@OpenAI/Codex/cli.js", "by the folder, in any case"},
    };
    for (const Row &row : rows)
        EXPECT_EQ(detectAgent(row.path, row.args), "Codex") << row.reason;
}

TEST(DetectAgentTest, otherProcessesAreNoAgents) {
    const std::array rows{
        Row{"", std::nullopt, "no path"},
        Row{"bun", "bun run dev", "no agent among the words"},
        Row{"node", std::nullopt, "a runtime whose words are unknown"},
        Row{"node", "", "a runtime without words"},
        Row{"python", "python claude.py", "another extension, and no runtime"},
        Row{"python", "python /opt/bin/claude", "no runtime"},
        Row{"node", "node a b claude", "the fourth word"},
        Row{"node", "node a b /x/claude-code/cli.js", "a folder in the fourth word"},
        Row{"node", "node claude.js", "not the whole name"},
        Row{"node", "node claude-code/cli.js", "no slash before the folder"},
        Row{"/opt/claude/server", "server", "only a folder of that name"},
        Row{"/opt/bin/claude-server", "claude", "a longer name"},
    };
    for (const Row &row : rows)
        EXPECT_EQ(detectAgent(row.path, row.args), std::nullopt) << row.reason;
}

} // namespace
} // namespace tarnvale
