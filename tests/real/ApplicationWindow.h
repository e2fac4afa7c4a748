#pragma once

#include "real/applicationTest.h"

#include <string>

namespace tarnvale {

/// The application with its main window, on a screen that has room for it.
class ApplicationWindow : public ApplicationTest {
protected:
    ApplicationWindow() : ApplicationTest("1280x860") {}
    void SetUp() override;

    /// Whether it came up with the window on its first page.
    [[nodiscard]] bool startWithWindow(const std::vector<std::string> &variables = {});

    /// Goes to a page by a click into the sidebar; whether it is shown.
    [[nodiscard]] bool goTo(const std::string &page);

    /// Waits for this to be on the screen; whether it came.
    [[nodiscard]] bool sees(const std::string &role, const std::string &words);

    /// Waits for it, turns the wheel until it is in sight, and clicks on it; whether that could be done.
    [[nodiscard]] bool choose(const std::string &role, const std::string &words);

    /// The main window's frame as it was read last.
    [[nodiscard]] AccessibleNode frame() const;

private:
    [[nodiscard]] int clicksTo(const AccessibleNode &node) const;
    [[nodiscard]] bool bringIntoSight(const std::string &role, const std::string &words);
};

} // namespace tarnvale
