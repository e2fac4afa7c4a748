#include "discovery/ProcessArguments.h"

#include "discovery/linux/ForkedChild.h"

#include <chrono>
#include <csignal>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace tarnvale {
namespace {

using testing::ElementsAre;

/// A child that becomes /bin/sleep with just these words and this environment.
class Sleeper {
public:
    Sleeper(std::vector<std::string> words, std::vector<std::string> environment) : m_pid(fork()) {
        if (m_pid != 0)
            return;
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        const auto argv = pointers(words);
        const auto envp = pointers(environment);
        execve("/bin/sleep", argv.data(), envp.data());
        _exit(127);
    }
    Sleeper(const Sleeper &) = delete;
    Sleeper &operator=(const Sleeper &) = delete;
    ~Sleeper() {
        kill(m_pid, SIGKILL);
        waitpid(m_pid, nullptr, 0);
    }

    /// Its arguments once they are `first` and more; what was there last when that never comes.
    [[nodiscard]] std::optional<ProcessArguments::Info> read(const std::string &first) const {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        for (;;) {
            auto info = ProcessArguments::read(m_pid);
            if ((info && info->arguments.front() == first) || std::chrono::steady_clock::now() > deadline)
                return info;
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    }

private:
    static std::vector<char *> pointers(std::vector<std::string> &texts) {
        std::vector<char *> result;
        for (std::string &text : texts)
            result.push_back(text.data());
        result.push_back(nullptr);
        return result;
    }

    Pid m_pid;
};

TEST(ReadProcessArgumentsTest, wordsAndEnvironmentKeepTheirBoundaries) {
    const Sleeper sleeper({"my sleep", "86400"}, {"A=1", "B=two words=and more", "C=", "A=2", "odd", "=x"});
    const auto info = sleeper.read("my sleep");
    ASSERT_TRUE(info);
    EXPECT_THAT(info->arguments, ElementsAre("my sleep", "86400"));
    EXPECT_EQ(info->environment, (std::map<std::string, std::string>{
                                     {"A", "2"}, {"B", "two words=and more"}, {"C", ""}, {"", "x"}}));
}

TEST(ReadProcessArgumentsTest, bytesThatAreNoTextAreReplaced) {
    const Sleeper sleeper({"s\xFF", "86400"}, {"K\xFE=v\xFD"});
    const auto info = sleeper.read("s\xEF\xBF\xBD");
    ASSERT_TRUE(info);
    EXPECT_EQ(info->arguments.front(), "s\xEF\xBF\xBD");
    EXPECT_EQ(info->environment.begin()->first, "K\xEF\xBF\xBD");
    EXPECT_EQ(info->environment.begin()->second, "v\xEF\xBF\xBD");
}

TEST(ReadProcessArgumentsTest, whatHasNoArgumentsIsNothing) {
    for (const Pid pid : {0, -1, 2147483647})
        EXPECT_FALSE(ProcessArguments::read(pid)) << pid;
    ForkedChild zombie([] { return std::string(); });
    kill(zombie.pid(), SIGKILL);
    siginfo_t info{};
    ASSERT_EQ(waitid(P_PID, static_cast<id_t>(zombie.pid()), &info, WEXITED | WNOWAIT), 0);
    EXPECT_FALSE(ProcessArguments::read(zombie.pid())) << "a zombie";
}

} // namespace
} // namespace tarnvale
