#include "presentation/pages/SitesController.h"

#include "presentation/pages/PagesTest.h"

#include <gmock/gmock.h>

namespace tarnvale {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class SitesPageState : public PagesTest {
protected:
    SitesController page{world.platform()};
};

TEST_F(SitesPageState, untilTheSitesAreReadItIsNotReady) {
    EXPECT_FALSE(page.isReady());
    page.setSites({});
    EXPECT_TRUE(page.isReady());
    EXPECT_EQ(page.siteCount(), 0);
    EXPECT_EQ(page.subtitle(), QStringLiteral("0 Herd / Valet sites on this Mac."));
}

TEST_F(SitesPageState, oneSiteIsOne) {
    page.setSites({{"shop.test", "http://shop.test"}});
    EXPECT_EQ(page.subtitle(), QStringLiteral("1 Herd / Valet site on this Mac."));
}

TEST_F(SitesPageState, sitesStandInTheirOrderWithTheirScheme) {
    page.setSites({{"api.test", "https://api.test"}, {"shop.test", "http://shop.test"}});
    EXPECT_EQ(page.subtitle(), QStringLiteral("2 Herd / Valet sites on this Mac."));
    EXPECT_THAT(texts(page.sites(), "domain"), ElementsAre("api.test", "shop.test"));
    EXPECT_THAT(texts(page.sites(), "isSecured"), ElementsAre("true", "false"));
}

TEST_F(SitesPageState, aClickOpensTheAddress) {
    page.setSites({{"api.test", "https://api.test"}});
    page.open(QStringLiteral("https://api.test"));
    EXPECT_THAT(world.desktop.opened, ElementsAre("https://api.test"));
}

TEST_F(SitesPageState, onlyAddressesOfSitesAreOpened) {
    page.setSites({{"api.test", "https://api.test"}});
    page.open(QStringLiteral("https://elsewhere.test"));
    page.open(QString());
    EXPECT_THAT(world.desktop.opened, IsEmpty());
}

TEST_F(SitesPageState, sitesAreReplaced) {
    page.setSites({{"api.test", "https://api.test"}, {"shop.test", "http://shop.test"}});
    page.setSites({{"docs.test", "http://docs.test"}});
    EXPECT_THAT(texts(page.sites(), "domain"), ElementsAre("docs.test"));
}

} // namespace
} // namespace tarnvale
