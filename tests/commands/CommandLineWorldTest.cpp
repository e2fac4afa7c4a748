#include "commands/CommandLineWorld.h"

#include "discovery/Machine.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fcntl.h>
#include <unistd.h>

namespace tarnvale {
namespace {

TEST(CommandLineWorldTest, theMachineIsMadeOnce) {
    const CommandLineWorld world = CommandLineWorld::real();
    const CommandLineWorld copy = world;
    EXPECT_EQ(&world.machine(), &world.machine());
    EXPECT_EQ(&world.machine(), &copy.machine());
}

TEST(CommandLineWorldTest, theUserIsOurs) {
    EXPECT_EQ(CommandLineWorld::real().uid, getuid());
}

TEST(CommandLineWorldTest, sleepingTakesItsTime) {
    using namespace std::chrono_literals;
    const auto start = std::chrono::steady_clock::now();
    CommandLineWorld::real().sleep(20ms);
    EXPECT_GE(std::chrono::steady_clock::now() - start, 20ms);
}

TEST(CommandLineWorldTest, aURLGoesToTheDesktopsHandler) {
    const TemporaryFolder folder;
    folder.writeScript("xdg-open", "printf '[%s]' \"$@\" > '" + folder.path("opened") + "'");
    const std::string before = std::getenv("PATH");
    setenv("PATH", (folder.path() + ":" + before).c_str(), 1);
    CommandLineWorld::real().openURL("http://localhost:3000");
    EXPECT_EQ(readFile(folder.path("opened")), "[http://localhost:3000]");
    setenv("PATH", folder.path("none").c_str(), 1);
    CommandLineWorld::real().openURL("http://localhost:3001");
    EXPECT_EQ(readFile(folder.path("opened")), "[http://localhost:3000]")
        << "without a handler nothing happens";
    setenv("PATH", before.c_str(), 1);
}

} // namespace
} // namespace tarnvale
