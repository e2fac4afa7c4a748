// The built program itself, from its first word to its exit status.

#include "commands/CommandLineFixture.h"
#include "discovery/FileDescriptor.h"
#include "support/TemporaryFolder.h"
#include "support/runProgram.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <dlfcn.h>
#include <fcntl.h>
#include <filesystem>
#include <gnu/libc-version.h>

namespace tarnvale {
namespace {

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

constexpr int unavailable = 69; // EX_UNAVAILABLE of sysexits.h

/// A copy of the program in a folder of its own, away from any application module.
class ExecutableTest : public testing::Test {
protected:
    ExecutableTest() { std::filesystem::copy_file(TARNVALE_EXECUTABLE, m_program); }

    [[nodiscard]] ProgramRun run(std::vector<std::string> words,
                                 std::optional<int> output = std::nullopt) const {
        words.insert(words.begin(), m_program);
        return runProgram(words, output);
    }

    /// Expects one line on standard error that tells why the application can't start.
    static void expectUnavailable(const ProgramRun &run, const std::string &reason) {
        EXPECT_EQ(run.status, unavailable);
        EXPECT_EQ(run.output, "");
        EXPECT_THAT(run.error, AllOf(StartsWith("tarnvale: "), HasSubstr(reason), EndsWith("\n")));
        EXPECT_EQ(std::count(run.error.begin(), run.error.end(), '\n'), 1) << run.error;
    }

    TemporaryFolder m_folder;
    std::string m_program = m_folder.path("tarnvale");
};

TEST_F(ExecutableTest, helpPrintsTheUsage) {
    for (const std::string word : {"help", "--help", "-h"}) {
        const ProgramRun result = run({word, "extra"});
        EXPECT_EQ(result.status, 0);
        EXPECT_EQ(result.output, usageText + "\n");
        EXPECT_EQ(result.error, "");
    }
}

TEST_F(ExecutableTest, aLinkOfAnyNameDoesTheSame) {
    const std::string link = m_folder.path("tarnctl");
    std::filesystem::create_symlink(m_program, link);
    EXPECT_EQ(runProgram({link, "help"}).output, usageText + "\n");
    expectUnavailable(runProgram({link}), "isn't installed");
}

TEST_F(ExecutableTest, aMissingNumberIsTold) {
    const ProgramRun result = run({"kill"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.error, "tarnctl kill needs a port number\n\n" + usageText + "\n");
}

TEST_F(ExecutableTest, portsPrintsATableOrSaysThatThereIsNone) {
    const ProgramRun result = run({"ports"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.error, "");
    EXPECT_TRUE(result.output == "No dev servers running.\n" ||
                result.output.starts_with("PORT    PID     UP "))
        << result.output;
}

TEST_F(ExecutableTest, aPortThatNobodyHoldsIsTold) {
    const ProgramRun result = run({"kill", "99999"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.error, "Nothing is listening on :99999.\n");
}

TEST_F(ExecutableTest, aFullDiskIsAFailureWithoutNoise) {
    const FileDescriptor full(open("/dev/full", O_WRONLY | O_CLOEXEC));
    if (!full.isOpen())
        GTEST_SKIP() << "there is no /dev/full";
    for (const std::string word : {"help", "ports"}) {
        const ProgramRun result = run({word}, full.get());
        EXPECT_EQ(result.status, 1) << word;
        EXPECT_EQ(result.error, "") << word;
    }
}

TEST_F(ExecutableTest, aReaderThatHasGoneEndsItQuietly) {
    for (const std::string word : {"help", "ports"}) {
        int ends[2];
        ASSERT_EQ(pipe2(ends, O_CLOEXEC), 0);
        FileDescriptor readEnd(ends[0]);
        const FileDescriptor writeEnd(ends[1]);
        readEnd.reset();
        const ProgramRun result = run({word}, writeEnd.get());
        EXPECT_EQ(result.status, -SIGPIPE) << word;
        EXPECT_EQ(result.error, "") << word;
    }
}

TEST_F(ExecutableTest, aClosedOutputIsAFailureWithoutNoise) {
    const std::string script = m_folder.writeScript("closed", "exec '" + m_program + "' \"$@\" >&-");
    for (const std::string word : {"help", "ports"}) {
        const ProgramRun result = runProgram({script, word});
        EXPECT_EQ(result.status, 1) << word;
        EXPECT_EQ(result.error, "") << word;
    }
}

TEST_F(ExecutableTest, withoutTheApplicationItSaysSo) {
    expectUnavailable(run({}), "isn't installed");
    expectUnavailable(run({"frob", "help"}), "isn't installed");
    expectUnavailable(run({""}), "isn't installed");
}

TEST_F(ExecutableTest, anApplicationThatCannotBeLoadedIsTold) {
    m_folder.write("libtarnvale-app.so", "not a module");
    expectUnavailable(run({}), "can't be loaded");
}

TEST_F(ExecutableTest, aModuleWithoutTheEntryIsTold) {
    Dl_info info{};
    ASSERT_NE(dladdr(reinterpret_cast<void *>(&gnu_get_libc_version), &info), 0);
    std::filesystem::create_symlink(std::filesystem::canonical(info.dli_fname),
                                    m_folder.path("libtarnvale-app.so"));
    expectUnavailable(run({}), "is not of this version");
}

TEST_F(ExecutableTest, theCommandLineNeedsNoApplication) {
    m_folder.write("libtarnvale-app.so", "not a module");
    EXPECT_EQ(run({"help"}).status, 0);
    EXPECT_EQ(run({"ports"}).status, 0);
}

} // namespace
} // namespace tarnvale
