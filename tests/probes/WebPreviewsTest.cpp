#include "probes/WebPreviews.h"

#include "support/FakePlatform.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <numeric>

namespace tarnvale {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::UnorderedElementsAre;

class WebPreviewsTest : public testing::Test {
protected:
    WebPreviewsTest() {
        world.previewCapturer.isSlow = true;
        connect(&WebPreviews::previewsChanged, [this](std::int64_t port) { changed.push_back(port); });
    }
    ~WebPreviewsTest() override {
        world.previewCapturer.answerAll();
        settle();
    }

    template<typename Signal, typename Call> void connect(Signal signal, Call call) {
        QObject::connect(previews.get(), signal, previews.get(), std::move(call));
    }
    void turn(bool isOn) { world.settings.values[WebPreviews::settingsKey] = isOn; }
    void answer(std::int64_t port, const std::optional<QByteArray> &picture = std::nullopt) {
        world.previewCapturer.answer(port, picture);
        settle();
    }
    void update(const std::vector<std::int64_t> &ports) {
        previews->update(ports);
        settle();
    }
    [[nodiscard]] const std::vector<std::int64_t> &asked() const { return world.previewCapturer.asked; }
    /// The ports with a picture, in order.
    [[nodiscard]] std::vector<std::int64_t> pictured() const {
        std::vector<std::int64_t> ports;
        for (const auto &[port, preview] : previews->previews())
            ports.push_back(port);
        return ports;
    }

    FakePlatform world;
    std::unique_ptr<WebPreviews> previews =
        std::make_unique<WebPreviews>(world.clock, world.settings, world.previewCapturer);
    std::vector<std::int64_t> changed;
};

TEST_F(WebPreviewsTest, portsAreCapturedOneAtATimeInTheirOrder) {
    update({3000, 8000, 5173});
    EXPECT_EQ(previews->capturing(), 3000);
    EXPECT_THAT(previews->queue(), ElementsAre(8000, 5173));
    answer(3000, "shop");
    EXPECT_EQ(previews->capturing(), 8000);
    answer(8000);
    answer(5173, "blog");
    EXPECT_EQ(previews->capturing(), std::nullopt);
    EXPECT_THAT(asked(), ElementsAre(3000, 8000, 5173));
    EXPECT_THAT(pictured(), ElementsAre(3000, 5173));
    EXPECT_THAT(changed, ElementsAre(3000, 5173));
}

TEST_F(WebPreviewsTest, aPictureBearsTheTimeOfItsEnd) {
    update({3000});
    const Instant begin = world.clock.now();
    world.pass(9s);
    answer(3000, "shop");
    const WebPreviews::Preview expected{"shop", begin + 9s};
    EXPECT_THAT(previews->previews(), ElementsAre(Pair(3000, expected)));
    EXPECT_THAT(previews->attemptedAt(), ElementsAre(Pair(3000, begin)));
}

TEST_F(WebPreviewsTest, aPortIsTriedAgainAfterMoreThanAMinute) {
    world.previewCapturer.isSlow = false;
    world.previewCapturer.pictures = {{3000, "shop"}};
    update({3000, 3001});
    world.pass(60s);
    update({3000, 3001});
    EXPECT_THAT(asked(), ElementsAre(3000, 3001)) << "a minute isn't more than a minute";
    world.pass(1ms);
    update({3000, 3001});
    EXPECT_THAT(asked(), ElementsAre(3000, 3001, 3000, 3001)) << "with a picture as without one";
}

TEST_F(WebPreviewsTest, theMinuteBeginsWithTheAttempt) {
    update({3000});
    world.pass(11s);
    answer(3000);
    world.pass(50s);
    update({3000});
    EXPECT_THAT(asked(), ElementsAre(3000, 3000));
}

TEST_F(WebPreviewsTest, aPortThatCameBackIsNew) {
    world.previewCapturer.isSlow = false;
    update({3000});
    update({});
    EXPECT_THAT(previews->attemptedAt(), IsEmpty());
    update({3000});
    EXPECT_THAT(asked(), ElementsAre(3000, 3000));
}

TEST_F(WebPreviewsTest, aClockThatIsSetBackDoesNotEndThePreviews) {
    world.previewCapturer.isSlow = false;
    update({3000});
    ManualClock earlier;
    WebPreviews others(earlier, world.settings, world.previewCapturer);
    earlier.advance(1h);
    others.update({3000});
    EXPECT_THAT(asked(), ElementsAre(3000, 3000));
}

TEST_F(WebPreviewsTest, aFailedCaptureLeavesTheOldPicture) {
    update({3000});
    answer(3000, "shop");
    world.pass(61s);
    update({3000});
    answer(3000);
    EXPECT_EQ(previews->previews().at(3000).image, "shop");
    EXPECT_THAT(changed, ElementsAre(3000)) << "it is the same one";
}

TEST_F(WebPreviewsTest, aQueuedPortIsNotQueuedTwice) {
    update({3000, 3001, 3001});
    update({3000, 3001});
    world.pass(61s);
    update({3001, 3000});
    EXPECT_THAT(previews->queue(), ElementsAre(3001, 3000)) << "only the port under way is due again";
    answer(3000);
    answer(3001);
    answer(3000);
    EXPECT_THAT(asked(), ElementsAre(3000, 3001, 3000));
}

TEST_F(WebPreviewsTest, aPortThatStopsLeavesTheQueueAndTakesItsPictureAlong) {
    update({3000, 3001});
    answer(3000, "shop");
    update({3001, 3002});
    EXPECT_THAT(pictured(), IsEmpty());
    EXPECT_THAT(changed, ElementsAre(3000, 3000));
    EXPECT_THAT(previews->queue(), ElementsAre(3002));
    update({});
    EXPECT_THAT(previews->queue(), IsEmpty());
    answer(3001);
    EXPECT_THAT(asked(), ElementsAre(3000, 3001));
}

TEST_F(WebPreviewsTest, aCaptureUnderWayOfAPortThatStoppedSetsItsPictureUntilTheNextUpdate) {
    update({3000});
    update({});
    EXPECT_EQ(previews->capturing(), 3000);
    answer(3000, "shop");
    EXPECT_THAT(pictured(), ElementsAre(3000));
    update({});
    EXPECT_THAT(pictured(), IsEmpty());
}

TEST_F(WebPreviewsTest, aRefreshWaitsItsTurnAtTheFront) {
    update({3000, 3001, 3002});
    previews->refresh(3002);
    EXPECT_EQ(previews->capturing(), 3000);
    EXPECT_THAT(previews->queue(), ElementsAre(3002, 3001));
    answer(3000);
    answer(3002);
    answer(3001);
    EXPECT_THAT(asked(), ElementsAre(3000, 3002, 3001));
}

TEST_F(WebPreviewsTest, aRefreshIsNotHeldBack) {
    update({3000});
    answer(3000, "old");
    previews->refresh(3000);
    EXPECT_EQ(previews->capturing(), 3000);
    previews->refresh(3000);
    answer(3000, "new");
    EXPECT_EQ(previews->previews().at(3000).image, "new");
    answer(3000, "newer");
    EXPECT_EQ(previews->previews().at(3000).image, "newer");
    EXPECT_THAT(asked(), ElementsAre(3000, 3000, 3000));
}

TEST_F(WebPreviewsTest, turnedOffItOnlyDrops) {
    update({3000, 3001});
    answer(3000, "shop");
    answer(3001, "blog");
    turn(false);
    world.pass(61s);
    update({3001, 3002});
    EXPECT_THAT(pictured(), ElementsAre(3001));
    EXPECT_THAT(asked(), ElementsAre(3000, 3001));
    EXPECT_THAT(previews->queue(), IsEmpty());
    turn(true);
    update({3001, 3002});
    EXPECT_EQ(previews->capturing(), 3001);
}

TEST_F(WebPreviewsTest, turnedOffInBetweenNoFurtherLoadStarts) {
    update({3000, 3001});
    turn(false);
    answer(3000, "shop");
    EXPECT_THAT(asked(), ElementsAre(3000));
    EXPECT_THAT(pictured(), ElementsAre(3000)) << "what was under way has ended";
    previews->refresh(3000);
    EXPECT_EQ(previews->capturing(), std::nullopt);
}

TEST_F(WebPreviewsTest, onlyAStoredFalseTurnsItOff) {
    EXPECT_TRUE(previews->isEnabled());
    world.settings.values[WebPreviews::settingsKey] = std::string("no");
    EXPECT_TRUE(previews->isEnabled());
    turn(true);
    EXPECT_TRUE(previews->isEnabled());
    turn(false);
    EXPECT_FALSE(previews->isEnabled());
}

TEST_F(WebPreviewsTest, theBeginAndTheEndOfACaptureAreTold) {
    std::vector<std::optional<std::int64_t>> told;
    connect(&WebPreviews::capturingChanged, [&] { told.push_back(previews->capturing()); });
    update({3000, 3001});
    answer(3000, "shop");
    answer(3001);
    EXPECT_THAT(told, ElementsAre(3000, std::nullopt, 3001, std::nullopt));
}

TEST_F(WebPreviewsTest, whoHearsOfAChangeMayAskForMore) {
    connect(&WebPreviews::capturingChanged, [this] {
        if (!previews->capturing() && asked().size() < 3)
            previews->refresh(4000);
    });
    update({3000, 3001});
    answer(3000);
    EXPECT_EQ(previews->capturing(), 4000);
    answer(4000);
    answer(4000);
    answer(3001);
    EXPECT_THAT(asked(), ElementsAre(3000, 4000, 4000, 3001));
}

TEST_F(WebPreviewsTest, whoHearsOfAChangeMayEndIt) {
    update({3000, 3001, 3002});
    answer(3000, "shop");
    answer(3001, "blog");
    connect(&WebPreviews::previewsChanged, [this] { previews.reset(); });
    previews->update({});
    EXPECT_EQ(previews, nullptr);
    settle();
}

TEST_F(WebPreviewsTest, itMayGoInMidCapture) {
    update({3000, 3001});
    previews.reset();
    answer(3000, "shop");
    EXPECT_THAT(asked(), ElementsAre(3000));
}

TEST_F(WebPreviewsTest, whereNothingDrawsPagesManyPortsAreSoonTried) {
    world.previewCapturer.isSlow = false;
    std::vector<std::int64_t> ports(50'000);
    std::iota(ports.begin(), ports.end(), 1);
    update(ports);
    EXPECT_EQ(asked().size(), ports.size());
    EXPECT_THAT(previews->queue(), IsEmpty());
    update(ports);
    EXPECT_EQ(asked().size(), ports.size()) << "nor again before a minute";
}

} // namespace
} // namespace tarnvale
