#pragma once

#include "commands/hotkey/HotKeyRegistrar.h"
#include "commands/hotkey/PendingAnswer.h"

namespace tarnvale {

/// The way out where no combination can be taken: a command that the user has the desktop bind.
class CommandBinding : public HotKeyRegistrar {
public:
    explicit CommandBinding(std::string command) : m_command(std::move(command)) {}

    /// Always `unavailable`.
    [[nodiscard]] QFuture<HotKeyOutcome> grab(const Shortcut &, HotKeyOccasion) override {
        return answered(std::unexpected(HotKeyFailure::unavailable));
    }
    void release() override {}
    [[nodiscard]] HotKeyAvailability availability() const override {
        return {.kind = HotKeyAvailability::Kind::needsCommand, .command = m_command};
    }

private:
    std::string m_command;
};

} // namespace tarnvale
