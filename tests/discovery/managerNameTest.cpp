#include "discovery/managerName.h"

#include <gtest/gtest.h>

namespace tarnvale {
namespace {

TEST(ManagerNameTest, managersHaveTheirUsersName) {
    EXPECT_EQ(managerName(ServiceManager::launchd), "launchd");
    EXPECT_EQ(managerName(ServiceManager::systemd), "systemd");
    EXPECT_EQ(managerName(ServiceManager::systemdUser), "systemd");
}

} // namespace
} // namespace tarnvale
