#pragma once

#include "commands/hotkey/HotKeyRegistrar.h"
#include "commands/hotkey/PendingAnswer.h"

#include <set>
#include <vector>

namespace tarnvale {

/// A system of which a test decides what it gives away.
class FakeRegistrar : public HotKeyRegistrar {
public:
    struct Order {
        Shortcut shortcut;
        HotKeyOccasion occasion;

        bool operator==(const Order &) const = default;
    };

    std::vector<Order> orders;
    int releases = 0;
    std::optional<Shortcut> taken;
    std::set<std::string> others;                 ///< labels of what isn't free
    HotKeyFailure failure = HotKeyFailure::taken; ///< that of those
    bool isAsking = false;                        ///< answers only by `answer`
    HotKeyAvailability state{};

    [[nodiscard]] QFuture<HotKeyOutcome> grab(const Shortcut &shortcut, HotKeyOccasion occasion) override {
        release();
        --releases;
        orders.push_back({shortcut, occasion});
        QFuture<HotKeyOutcome> future = m_pending.begin();
        if (!isAsking)
            answer();
        return future;
    }

    /// Answers the last order.
    void answer() {
        const Shortcut &wanted = orders.back().shortcut;
        const bool isFree = !others.contains(wanted.display);
        taken = isFree ? std::optional(wanted) : std::nullopt;
        m_pending.give(isFree ? HotKeyOutcome() : std::unexpected(failure));
    }

    void release() override {
        ++releases;
        taken.reset();
        m_pending.abandon();
    }

    [[nodiscard]] HotKeyAvailability availability() const override { return state; }

private:
    PendingOutcome m_pending;
};

} // namespace tarnvale
