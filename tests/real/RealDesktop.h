#pragma once

#include "platform/linux/PrivateBus.h"
#include "platform/linux/VirtualDisplay.h"
#include "real/AccessibleTree.h"
#include "support/TemporaryFolder.h"
#include "support/TestProcess.h"
#include "support/runProgram.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace tarnvale {

/// A desktop of a test's own: an X server of 800 by 600 with a window manager, a session bus, what screen
/// readers need, and a home.
class RealDesktop {
public:
    RealDesktop();
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

    /// Waits until the application looks like this to a screen reader; whether it came to.
    [[nodiscard]] bool shows(const std::function<bool(const AccessibleTree &)> &condition,
                             std::chrono::milliseconds timeout = std::chrono::seconds(20));
    [[nodiscard]] bool isPanelOpen();
    [[nodiscard]] bool isPanelClosed();

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
