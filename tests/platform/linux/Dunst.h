#pragma once

#include "platform/linux/PrivateBus.h"
#include "platform/linux/VirtualDisplay.h"
#include "support/TemporaryFolder.h"
#include "support/TestProcess.h"
#include "support/runProgram.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace tarnvale {

/// A real server of notifications on a bus and a display of a test's own. A left click on a notification is
/// its default action.
class Dunst {
public:
    /// Both outlive this object.
    Dunst(const PrivateBus &bus, const VirtualDisplay &display) : m_bus(bus), m_display(display) {}
    Dunst(const Dunst &) = delete;
    Dunst &operator=(const Dunst &) = delete;

    /// Why it can't run here; empty when it can.
    [[nodiscard]] std::string problem() const;

    /// Whether it came to answer.
    [[nodiscard]] bool start();
    void kill() { m_process.reset(); }

    /// Runs dunstctl.
    [[nodiscard]] ProgramRun control(const std::vector<std::string> &words) const;

    /// Opens its menu of actions and picks the one with this title.
    void choose(std::string_view title) const;

    /// Waits until it shows that many.
    [[nodiscard]] bool isDisplayed(std::string_view count) const;

private:
    const PrivateBus &m_bus;
    const VirtualDisplay &m_display;
    TemporaryFolder m_folder;
    std::unique_ptr<TestProcess> m_process;
};

} // namespace tarnvale
