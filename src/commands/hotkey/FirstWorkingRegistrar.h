#pragma once

#include "commands/hotkey/HotKeyRegistrar.h"
#include "commands/hotkey/PendingAnswer.h"

#include <QCoroTask>
#include <QObject>
#include <QPointer>

#include <memory>
#include <vector>

namespace tarnvale {

/// Several ways to take a combination, of which each order goes to the first that is there: one that answers
/// `unavailable` sends it on to the next.
class FirstWorkingRegistrar : public QObject, public HotKeyRegistrar {
    Q_OBJECT
public:
    /// At least one.
    explicit FirstWorkingRegistrar(std::vector<std::unique_ptr<HotKeyRegistrar>> candidates);
    FirstWorkingRegistrar(const FirstWorkingRegistrar &) = delete;
    FirstWorkingRegistrar &operator=(const FirstWorkingRegistrar &) = delete;
    ~FirstWorkingRegistrar() override;

    [[nodiscard]] QFuture<HotKeyOutcome> grab(const Shortcut &shortcut, HotKeyOccasion occasion) override;
    void release() override;

    /// That of the one which has, or is to answer, the last order.
    [[nodiscard]] HotKeyAvailability availability() const override;

private:
    static QCoro::Task<> ask(QPointer<FirstWorkingRegistrar> self, Shortcut shortcut,
                             HotKeyOccasion occasion);

    std::vector<std::unique_ptr<HotKeyRegistrar>> m_candidates;
    std::size_t m_asked = 0;
    std::uint64_t m_round = 0; ///< of orders
    PendingOutcome m_pending;
};

} // namespace tarnvale
