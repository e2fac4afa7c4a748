#include "commands/hotkey/FirstWorkingRegistrar.h"

#include "commands/hotkey/CommandBinding.h"
#include "commands/hotkey/FakeRegistrar.h"
#include "support/ManualClock.h"

#include <gtest/gtest.h>

namespace tarnvale {
namespace {

class FirstWorkingRegistrarTest : public testing::Test {
protected:
    FirstWorkingRegistrarTest() {
        std::vector<std::unique_ptr<HotKeyRegistrar>> candidates;
        for (FakeRegistrar **fake : {&m_first, &m_second}) {
            auto made = std::make_unique<FakeRegistrar>();
            *fake = made.get();
            candidates.push_back(std::move(made));
        }
        candidates.push_back(std::make_unique<CommandBinding>("toggle"));
        m_registrar = std::make_unique<FirstWorkingRegistrar>(std::move(candidates));
        m_registrar->onPress = [this] { ++m_presses; };
    }

    void refuse(FakeRegistrar &registrar, HotKeyFailure failure) {
        registrar.others = {Shortcut().display};
        registrar.failure = failure;
    }

    HotKeyOutcome grab() {
        const auto answer = m_registrar->grab({}, HotKeyOccasion::start);
        settle();
        return answer.isFinished() ? answer.result() : std::unexpected(HotKeyFailure::refused);
    }

    FakeRegistrar *m_first = nullptr;
    FakeRegistrar *m_second = nullptr;
    std::unique_ptr<FirstWorkingRegistrar> m_registrar;
    int m_presses = 0;
};

TEST_F(FirstWorkingRegistrarTest, theFirstThatIsThereGetsTheOrder) {
    EXPECT_TRUE(grab());
    EXPECT_EQ(m_first->taken, Shortcut());
    EXPECT_TRUE(m_second->orders.empty());
}

TEST_F(FirstWorkingRegistrarTest, oneThatIsMissingIsPassedOver) {
    refuse(*m_first, HotKeyFailure::unavailable);
    m_second->state = {.kind = HotKeyAvailability::Kind::desktopDecides};
    EXPECT_TRUE(grab());
    EXPECT_EQ(m_second->taken, Shortcut());
    EXPECT_EQ(m_registrar->availability().kind, HotKeyAvailability::Kind::desktopDecides);
    m_second->onPress();
    EXPECT_EQ(m_presses, 1);
}

TEST_F(FirstWorkingRegistrarTest, aRefusalIsTheAnswer) {
    refuse(*m_first, HotKeyFailure::taken);
    const auto outcome = grab();
    ASSERT_FALSE(outcome);
    EXPECT_EQ(outcome.error(), HotKeyFailure::taken);
    EXPECT_TRUE(m_second->orders.empty());
}

TEST_F(FirstWorkingRegistrarTest, withNoneThereACommandIsLeft) {
    refuse(*m_first, HotKeyFailure::unavailable);
    refuse(*m_second, HotKeyFailure::unavailable);
    const auto outcome = grab();
    ASSERT_FALSE(outcome);
    EXPECT_EQ(outcome.error(), HotKeyFailure::unavailable);
    EXPECT_EQ(m_registrar->availability().kind, HotKeyAvailability::Kind::needsCommand);
    EXPECT_EQ(m_registrar->availability().command, "toggle");
}

TEST_F(FirstWorkingRegistrarTest, oneThatComesLaterIsFoundByTheNextOrder) {
    refuse(*m_first, HotKeyFailure::unavailable);
    EXPECT_TRUE(grab());
    m_first->others.clear();
    EXPECT_TRUE(grab());
    EXPECT_EQ(m_first->taken, Shortcut());
    EXPECT_EQ(m_second->taken, std::nullopt);
}

TEST_F(FirstWorkingRegistrarTest, aReleaseAnswersWhatWaits) {
    m_first->isAsking = true;
    const auto answer = m_registrar->grab({}, HotKeyOccasion::start);
    settle();
    EXPECT_FALSE(answer.isFinished());
    m_registrar->release();
    settle();
    ASSERT_TRUE(answer.isFinished());
    EXPECT_EQ(answer.result().error(), HotKeyFailure::abandoned);
    EXPECT_TRUE(m_second->orders.empty());
}

TEST_F(FirstWorkingRegistrarTest, theEndAnswersWhatWaits) {
    m_first->isAsking = true;
    const auto answer = m_registrar->grab({}, HotKeyOccasion::start);
    m_registrar.reset();
    settle();
    ASSERT_TRUE(answer.isFinished());
    EXPECT_EQ(answer.result().error(), HotKeyFailure::abandoned);
}

} // namespace
} // namespace tarnvale
