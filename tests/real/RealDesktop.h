#pragma once

#include "platform/linux/PrivateBus.h"
#include "platform/linux/VirtualDisplay.h"
#include "real/AccessibleTree.h"
#include "support/TemporaryFolder.h"
#include "support/TestProcess.h"
#include "support/runProgram.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tarnvale {

/// A desktop of a test's own: an X server with a window manager, a session bus, what screen readers need, and
/// a home.
class RealDesktop {
public:
    /// `size` of its screen is as in "800x600".
    explicit RealDesktop(const std::string &size = "800x600");
    RealDesktop(const RealDesktop &) = delete;
    RealDesktop &operator=(const RealDesktop &) = delete;
    ~RealDesktop();

    /// Why it can't run here; empty when it can.
    [[nodiscard]] const std::string &problem() const { return m_problem; }

    /// "NAME=value" of all that leads programs here instead of to the user's own desktop.
    [[nodiscard]] std::vector<std::string> environment() const;

    /// Runs a program here to its end.
    [[nodiscard]] ProgramRun run(const std::vector<std::string> &words) const;

    /// Starts one that stays.
    [[nodiscard]] std::unique_ptr<TestProcess> start(const std::vector<std::string> &words) const;

    /// Starts a compositor and waits for it; false when none is installed.
    [[nodiscard]] bool startCompositor();

    /// Presses and releases keys, one after the other, each as in "ctrl+k".
    void press(const std::vector<std::string> &keys) const;
    void type(const std::string &text) const;
    /// A click of the left button.
    void click(int x, int y) const;
    void click(const AccessibleNode &node) const;
    /// Turns the wheel down, or up with a negative number, with the pointer at this place.
    void scroll(int x, int y, int clicks) const;

    /// The colour of one pixel of the screen, as 0xRRGGBB; nothing when it can't be read.
    [[nodiscard]] std::optional<std::uint32_t> pixel(int x, int y) const;

    /// Waits until the application looks like this to a screen reader; whether it came to.
    [[nodiscard]] bool shows(const std::function<bool(const AccessibleTree &)> &condition,
                             std::chrono::milliseconds timeout = std::chrono::seconds(40));
    [[nodiscard]] bool isPanelOpen();
    [[nodiscard]] bool isPanelClosed();
    /// The main window has the keyboard and shows the page of this title.
    [[nodiscard]] bool isWindowOpen(const std::string &page);
    [[nodiscard]] bool isWindowClosed();

    /// What was read last.
    [[nodiscard]] const AccessibleTree &tree() const { return m_tree; }

    PrivateBus bus;
    VirtualDisplay display;
    TemporaryFolder folder; ///< with "config", "state" and "run" as the XDG folders, and "home"

private:
    [[nodiscard]] std::string findProblem() const;
    void startAccessibility();

    std::string m_problem;
    std::unique_ptr<TestProcess> m_accessibility;
    std::unique_ptr<TestProcess> m_compositor;
    AccessibleTree m_tree;
};

} // namespace tarnvale
