#include "commands/automation/AutomationBusTest.h"

namespace tarnvale {
namespace {

TEST(Automation, withoutABusItStillCarriesOutRequests) {
    FakePlatform world;
    Automation automation(world.desktop, QDBusConnection("no such bus"));
    int answers = 0;
    automation.application().perform({.action = "open-port", .parameters = {3000}, .activationToken = {}},
                                     [&](const ApplicationService::Outcome &outcome) {
                                         EXPECT_TRUE(outcome);
                                         ++answers;
                                     });
    EXPECT_EQ(answers, 0);
    automation.application().start({});
    EXPECT_EQ(answers, 1);
    EXPECT_EQ(world.desktop.opened, std::vector<std::string>{"http://localhost:3000"});
}

class AutomationTest : public AutomationBusTest {};

TEST_F(AutomationTest, itLeavesNothingOnTheBus) {
    for (const QString &object :
         {applicationPath, applicationPath + "/Runner", applicationPath + "/SearchProvider"})
        EXPECT_NE(server->objectRegisteredAt(object), nullptr) << object.toStdString();
    automation.reset();
    for (const QString &object :
         {applicationPath, applicationPath + "/Runner", applicationPath + "/SearchProvider"})
        EXPECT_EQ(server->objectRegisteredAt(object), nullptr) << object.toStdString();
}

} // namespace
} // namespace tarnvale
