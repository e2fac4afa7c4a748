#include "real/RealProcess.h"
#include "real/servers.h"
#include "support/TemporaryFolder.h"
#include "support/TestProcess.h"

#include "discovery/text.h"

#include <algorithm>
#include <fcntl.h>
#include <filesystem>
#include <gmock/gmock.h>
#include <sys/prctl.h>
#include <unistd.h>

namespace tarnvale {
namespace {

using testing::HasSubstr;
using testing::MatchesRegex;
using testing::SizeIs;
using testing::StartsWith;

/// What a process may call itself, to do something to whoever looks at it.
struct HostileText {
    const char *what;
    const char *text;
};

void PrintTo(const HostileText &hostile, std::ostream *stream) {
    *stream << hostile.what;
}

/// A server whose name and folder hold a hostile text.
class RealHostileTextTest : public testing::TestWithParam<HostileText> {
protected:
    void SetUp() override {
        const std::string folder = temporary.path("shop" + std::string(GetParam().text));
        std::filesystem::create_directories(folder);
        server.emplace(
            [this] {
                prctl(PR_SET_NAME, GetParam().text);
                const FileDescriptor socket = listenOn(port.number());
                for (;;)
                    pause();
            },
            ProcessSetup{.folder = folder});
        ASSERT_TRUE(awaitListeners(port.number()));
    }

    TemporaryFolder temporary;
    ReservedPort port;
    std::optional<RealProcess> server;
};

/// Nothing in `text` but lines of visible characters, in valid UTF-8.
void expectHarmless(const std::string &text) {
    EXPECT_EQ(text, repairedUtf8(text)) << "not valid UTF-8";
    for (const char character : text) {
        const auto byte = static_cast<unsigned char>(character);
        EXPECT_TRUE(byte == '\n' || (byte >= 0x20 && byte != 0x7f)) << "control byte " << int{byte};
    }
    EXPECT_EQ(text.find("\xc2\x9b"), text.npos) << "an 8-bit control sequence";
    EXPECT_EQ(text.find("\xe2\x80\xae"), text.npos) << "a change of direction";
    EXPECT_EQ(text.find("\xe2\x80\xa8"), text.npos) << "a line separator";
}

TEST_P(RealHostileTextTest, neverReachesTheTerminal) {
    const ProgramRun table = tarnctl({"ports", "--all"});
    EXPECT_EQ(table.status, 0);
    expectHarmless(table.output);
    const auto rows = rowsOf(table.output, port.number());
    ASSERT_THAT(rows, SizeIs(1));
    EXPECT_THAT(rows.front(), HasSubstr("shop"));
    EXPECT_THAT(rows.front(), HasSubstr("\xef\xbf\xbd"));

    const ProgramRun run = tarnctl({"kill", port.text()});
    EXPECT_EQ(run.status, 0);
    expectHarmless(run.output);
    EXPECT_EQ(std::count(run.output.begin(), run.output.end(), '\n'), 1);
    EXPECT_THAT(run.output, StartsWith("Stopped "));
    EXPECT_TRUE(server->waitForEnd());
}

INSTANTIATE_TEST_SUITE_P(
    All, RealHostileTextTest,
    testing::Values(HostileText{"colours", "\x1b[31mred"}, HostileText{"windowTitle", "\x1b]0;title\x07"},
                    HostileText{"aSecondRow", "a\nb:1  2"}, HostileText{"backToTheStartOfTheRow", "\rover"},
                    HostileText{"eightBitControlSequence", "\xc2\x9b"
                                                           "2J"},
                    HostileText{"rightToLeftOverride", "\xe2\x80\xae"
                                                       "gnp"},
                    HostileText{"lineSeparator", "\xe2\x80\xa8"
                                                 "next"},
                    HostileText{"bytesThatAreNoText", "\xff\xfe"}, HostileText{"aSurrogate", "\xed\xa0\x80"},
                    HostileText{"deleteAndBackspace", "\x7f\x08"},
                    HostileText{"theEndOfANameInStat", ")\x1b 1 (S"}));

TEST(RealOutputTest, aFullDiskIsTold) {
    const ReservedPort port;
    const FileDescriptor socket = listenOn(port.number());
    const FileDescriptor full(open("/dev/full", O_WRONLY | O_CLOEXEC));
    if (!full.isOpen())
        GTEST_SKIP() << "this machine has no /dev/full";
    EXPECT_EQ(tarnctl({"ports", "--all"}, full.get()).status, 1);
    EXPECT_EQ(tarnctl({"help"}, full.get()).status, 1);
}

TEST(RealOutputTest, aReaderThatWantsOneLineGetsIt) {
    const ReservedPort port;
    const FileDescriptor socket = listenOn(port.number());
    const ProgramRun run =
        runProgram({"/bin/sh", "-c", "\"$1\" ports --all | head -1", "sh", TARNVALE_EXECUTABLE});
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.output, MatchesRegex("PORT +PID +UP +NAME +COMMAND\n"));
    EXPECT_EQ(run.error, "");
}

TEST(RealOutputTest, aReaderThatHasGoneEndsTheProgram) {
    const ReservedPort port;
    const FileDescriptor socket = listenOn(port.number());
    std::array<int, 2> ends{};
    ASSERT_EQ(pipe2(ends.data(), O_CLOEXEC), 0);
    close(ends[0]);
    const FileDescriptor writing(ends[1]);
    const ProgramRun run = tarnctl({"ports", "--all"}, writing.get());
    EXPECT_EQ(run.status, -SIGPIPE);
    EXPECT_EQ(run.error, "");
}

} // namespace
} // namespace tarnvale
