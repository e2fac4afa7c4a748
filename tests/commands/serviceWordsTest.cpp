#include "commands/serviceWords.h"

#include <gtest/gtest.h>

namespace tarnvale {
namespace {

TEST(ServiceWordsTest, theAdviceIsTheManagersOwnCommand) {
    EXPECT_EQ(stopAdvice({.service = "com.example.agent"}, 501),
              "launchctl bootout gui/501/com.example.agent");
    EXPECT_EQ(stopAdvice({.service = "homebrew.mxcl.redis"}, 501), "brew services stop redis");
    EXPECT_EQ(stopAdvice({.service = "sh.brew.redis"}, 501), "brew services stop redis");
    EXPECT_EQ(stopAdvice({.service = "nginx.service", .serviceManager = ServiceManager::systemd}, 501),
              "sudo systemctl stop nginx.service");
    EXPECT_EQ(stopAdvice({.service = "app@1.service", .serviceManager = ServiceManager::systemdUser}, 501),
              "systemctl --user stop app@1.service");
    EXPECT_EQ(
        stopAdvice({.service = "homebrew.redis.service", .serviceManager = ServiceManager::systemdUser}, 501),
        "brew services stop redis");
}

TEST(ServiceWordsTest, aNameThatAShellWouldTakeApartIsQuoted) {
    const auto advice = [](const std::string &unit) {
        return stopAdvice({.service = unit, .serviceManager = ServiceManager::systemd}, 501);
    };
    EXPECT_EQ(advice("a b.service"), "sudo systemctl stop 'a b.service'");
    EXPECT_EQ(advice("a\\x2db.service"), "sudo systemctl stop 'a\\x2db.service'");
    EXPECT_EQ(advice("x;reboot"), "sudo systemctl stop 'x;reboot'");
    EXPECT_EQ(advice("it's"), "sudo systemctl stop 'it'\\''s'");
    EXPECT_EQ(advice("$(reboot)"), "sudo systemctl stop '$(reboot)'");
}

} // namespace
} // namespace tarnvale
