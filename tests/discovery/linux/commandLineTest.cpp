#include "discovery/linux/commandLine.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tarnvale {
namespace {

using namespace std::string_view_literals;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(CommandLineTest, theWordsAreJoinedByBlanks) {
    struct Row {
        std::string_view content;
        std::string_view text;
        const char *reason;
    };
    const Row rows[]{
        {"node\0server.js\0--port\0003000\0"sv, "node server.js --port 3000", "the usual form"},
        {"nginx: master process /usr/sbin/nginx"sv, "nginx: master process /usr/sbin/nginx",
         "a rewritten title has no NUL"},
        {"postgres: writer\0\0\0\0\0"sv, "postgres: writer", "a shorter title leaves a run of NULs"},
        {"a\0\0b\0"sv, "a  b", "an empty word in between counts"},
        {"\0-c\0"sv, " -c", "the first word may be empty"},
        {""sv, "", "a kernel thread or a zombie"},
        {"\0\0\0"sv, "", "only empty words"},
        {"caf\xC3\xA9\0\xFF\0"sv, "caf\xC3\xA9 \xEF\xBF\xBD", "bytes that are no UTF-8 are replaced"},
        {"a\0\x1b[31m\0"sv, "a \x1b[31m", "controls stay: whoever shows it makes it printable"},
    };
    for (const Row &row : rows)
        EXPECT_EQ(joinedCommandLine(row.content), row.text) << row.reason;
}

TEST(CommandLineTest, everyNulEndsAWord) {
    EXPECT_THAT(commandLineWords("a\0b c\0"sv), ElementsAre("a", "b c"));
    EXPECT_THAT(commandLineWords("a\0\0"sv), ElementsAre("a", ""));
    EXPECT_THAT(commandLineWords("\0"sv), ElementsAre(""));
    EXPECT_THAT(commandLineWords("a"sv), ElementsAre("a"));
    EXPECT_THAT(commandLineWords("\xFF\xFE\0"sv), ElementsAre("\xFF\xFE"));
    EXPECT_THAT(commandLineWords(""sv), IsEmpty());
}

TEST(CommandLineTest, aNameThatTheKernelCutIsMadeWhole) {
    struct Row {
        const char *comm;
        const char *executable;
        const char *firstWord;
        const char *name;
        const char *reason;
    };
    const Row rows[]{
        {"redis", "/usr/bin/redis-server", "redis-server", "redis", "shorter than 15: not cut"},
        {"rails-developme", "/usr/bin/rails-development", "", "rails-development", "from the executable"},
        {"rails-developme", "", "./rails-development", "rails-development", "from the first word"},
        {"rails-developme", "/usr/bin/ruby", "rails-development", "rails-development",
         "the executable doesn't fit"},
        {"rails-developme", "/usr/bin/ruby", "ruby", "rails-developme", "neither fits"},
        {"rails-developme", "", "", "rails-developme", "neither is known"},
        {"rails-developme", "/opt/rails-developme", "", "rails-developme", "just 15 long"},
        {"rails-developme", "/usr/bin/rails-development (deleted)", "", "rails-development",
         "replaced by an upgrade"},
        {"next-server (v1", "/usr/bin/node", "next-server (v14.2.3)", "next-server (v14.2.3)",
         "a title with its version"},
        {"caf\xC3\xA9-caf\xC3\xA9-abc\xC3", "/b/caf\xC3\xA9-caf\xC3\xA9-abc\xC3\xA9!", "",
         "caf\xC3\xA9-caf\xC3\xA9-abc\xC3\xA9!", "cut inside a character"},
        {"\xFF", "", "", "\xEF\xBF\xBD", "not UTF-8"},
        {"", "/usr/bin/node", "node", "", "a process may have an empty name"},
    };
    for (const Row &row : rows)
        EXPECT_EQ(wholeCommand(row.comm, row.executable, row.firstWord), row.name) << row.reason;
}

TEST(CommandLineTest, aThreadNameGivesWayToTheProgram) {
    for (const char *comm : {"MainThread", "node-MainThread"}) {
        EXPECT_TRUE(isThreadName(comm));
        EXPECT_EQ(wholeCommand(comm, "/usr/bin/node", "npm run dev"), "node");
        EXPECT_EQ(wholeCommand(comm, "/usr/bin/node (deleted)", ""), "node");
        EXPECT_EQ(wholeCommand(comm, "", "/opt/node/bin/node"), "node");
        EXPECT_EQ(wholeCommand(comm, "", ""), comm);
    }
    EXPECT_FALSE(isThreadName("Mainthread"));
    EXPECT_FALSE(isThreadName("MainThread2"));
}

TEST(CommandLineTest, fifteenBytesMayHaveBeenMore) {
    EXPECT_FALSE(isCutName("fourteen bytes"));
    EXPECT_TRUE(isCutName("fifteen bytes!!"));
    EXPECT_TRUE(isCutName("kworker/u8:1-events"));
}

using Words = std::vector<std::string_view>;

TEST(CommandLineTest, aDockerProxyTellsWhatItPublishes) {
    const ProxiedPort expected{8080, "0.0.0.0"};
    EXPECT_EQ(parseDockerProxy({"/usr/bin/docker-proxy", "-proto", "tcp", "-host-ip", "0.0.0.0", "-host-port",
                                "8080", "-container-ip", "172.17.0.2", "-container-port", "80"}),
              expected);
    EXPECT_EQ(
        parseDockerProxy({"docker-proxy", "-container-port", "80", "-container-ip", "172.17.0.2",
                          "-host-port", "8080", "-host-ip", "0.0.0.0", "-proto", "tcp", "-use-listen-fd"}),
        expected);
    EXPECT_EQ(parseDockerProxy({"/usr/libexec/docker/docker-proxy", "-proto", "tcp", "-host-ip",
                                "::", "-host-port", "65535"}),
              (ProxiedPort{65535, "::"}));
    EXPECT_EQ(parseDockerProxy({"docker-proxy", "-proto", "tcp", "-host-port", "80"}), (ProxiedPort{80, ""}));
}

TEST(CommandLineTest, whatIsNoDockerProxyOverTcpPublishesNothing) {
    struct Row {
        Words words;
        const char *reason;
    };
    const Row rows[]{
        {{}, "no words"},
        {{""}, "an empty word"},
        {{"docker-proxy"}, "no options"},
        {{"dockerd", "-proto", "tcp", "-host-port", "8080"}, "another program"},
        {{"not-docker-proxy", "-proto", "tcp", "-host-port", "8080"}, "the name only ends so"},
        {{"docker-proxy", "-proto", "udp", "-host-port", "8080"}, "UDP"},
        {{"docker-proxy", "-proto", "sctp", "-host-port", "8080"}, "SCTP"},
        {{"docker-proxy", "-proto", "tcp", "-host-port"}, "the port is missing"},
        {{"docker-proxy", "-host-port", "8080", "-proto"}, "the protocol is missing"},
        {{"docker-proxy", "-host-port", "8080"}, "no protocol at all"},
        {{"docker-proxy", "-proto", "tcp", "-host-port", "0"}, "port 0"},
        {{"docker-proxy", "-proto", "tcp", "-host-port", "65536"}, "no such port"},
        {{"docker-proxy", "-proto", "tcp", "-host-port", "-1"}, "below zero"},
        {{"docker-proxy", "-proto", "tcp", "-host-port", "80a"}, "junk behind the number"},
        {{"docker-proxy", "-proto", "tcp", "-host-port", ""}, "an empty port"},
    };
    for (const Row &row : rows)
        EXPECT_FALSE(parseDockerProxy(row.words)) << row.reason;
}

} // namespace
} // namespace tarnvale
