// The page of the local sites as its user meets it.

#include "presentation/pages/PageScene.h"

#include <gmock/gmock.h>

namespace tarnvale {
namespace {

using testing::ElementsAre;
using testing::IsSupersetOf;
using testing::SizeIs;

TEST(SitesScreen, withoutSitesItTellsWhichWouldStandHere) {
    PageScene scene("empty");
    scene.showSites({});
    EXPECT_THAT(scene.texts(),
                IsSupersetOf({QStringLiteral("Sites"), QStringLiteral("No local sites"),
                              QStringLiteral("Laravel Herd and Valet sites (.test) appear here.")}));
}

TEST(SitesScreen, aCardTellsWhetherItsSiteIsSecured) {
    PageScene scene("empty");
    scene.showSites({{"api.test", "https://api.test"}, {"shop.test", "http://shop.test"}});
    EXPECT_THAT(scene.texts(), IsSupersetOf({QStringLiteral("api.test"), QStringLiteral("Secured"),
                                             QStringLiteral("shop.test"), QStringLiteral("HTTP")}));
    const auto tiles = scene.findAll("SymbolTile");
    ASSERT_THAT(tiles, SizeIs(2));
    EXPECT_EQ(tiles[0]->property("symbol").toString(), QStringLiteral("lock.fill"));
    EXPECT_EQ(tiles[1]->property("symbol").toString(), QStringLiteral("globe"));
    EXPECT_EQ(scene.findAll("SiteCard")[0]->property("tip").toString(), QStringLiteral("Open api.test"));
}

TEST(SitesScreen, aClickOrReturnOpensTheSite) {
    PageScene scene("empty");
    scene.showSites({{"api.test", "https://api.test"}, {"shop.test", "http://shop.test"}});
    scene.click(scene.findAll("SiteCard")[1]);
    scene.press(Qt::Key_Tab);
    scene.press(Qt::Key_Return);
    EXPECT_THAT(scene.world.platform.desktop.opened, ElementsAre("http://shop.test", "https://api.test"));
    EXPECT_EQ(scene.warnings(), "");
}

} // namespace
} // namespace tarnvale
