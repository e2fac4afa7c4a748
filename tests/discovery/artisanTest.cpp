#include "discovery/artisan.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tarnvale {
namespace {

using testing::IsEmpty;
using testing::Pair;
using testing::UnorderedElementsAre;

TEST(ArtisanTest, aWordEndingInArtisanBeforeServeIsAnArtisanServe) {
    for (const std::string_view args :
         {"php artisan serve --port=8000", "/usr/bin/php ./artisan serve", "artisan serve",
          "  php\tartisan   serve", "php artisan artisan serve", "php -d x=artisan serve"})
        EXPECT_TRUE(isArtisanServe(args)) << args;
}

TEST(ArtisanTest, otherCommandLinesAreNone) {
    for (const std::string_view args :
         {"", "artisan", "serve", "artisan --env=x serve", "serve artisan", "php artisan Serve",
          "php artisan serve:stop", "php artisans serve", "php Artisan serve", "php artisanserve"})
        EXPECT_FALSE(isArtisanServe(args)) << args;
}

TEST(ArtisanTest, onlyTheParentsCommandLineCounts) {
    const ProcessDetails artisan{.ppid = 1, .args = "php artisan serve"};
    const ProcessDetailsMap details{{20, {.ppid = 10, .args = "php -S 127.0.0.1:8000"}},
                                    {21, {.ppid = 11, .args = "php artisan serve"}},
                                    {22, {.ppid = 12, .args = "php -S 127.0.0.1:8002"}}};
    const ProcessDetailsMap parents{{10, artisan}, {11, {.ppid = 1, .args = "-zsh"}}};
    EXPECT_THAT(artisanParents(details, parents), UnorderedElementsAre(Pair(20, ArtisanParent{10, artisan})));
}

TEST(ArtisanTest, workersOfOneParentAllGetIt) {
    const ProcessDetails artisan{.ppid = 1, .args = "php artisan serve"};
    const ProcessDetailsMap details{{20, {.ppid = 10}}, {21, {.ppid = 10}}};
    EXPECT_THAT(
        artisanParents(details, {{10, artisan}}),
        UnorderedElementsAre(Pair(20, ArtisanParent{10, artisan}), Pair(21, ArtisanParent{10, artisan})));
}

TEST(ArtisanTest, withoutParentsThereIsNone) {
    EXPECT_THAT(artisanParents({{20, {.ppid = 10, .args = "php artisan serve"}}}, {}), IsEmpty());
    EXPECT_THAT(artisanParents({}, {{10, {.args = "php artisan serve"}}}), IsEmpty());
}

} // namespace
} // namespace tarnvale
