#pragma once

#include "support/TemporaryFolder.h"
#include "support/TestProcess.h"

#include <memory>
#include <string>
#include <vector>

namespace tarnvale {

/// An X server without a screen, with the window manager openbox. Skip the test when it isn't running: then
/// the machine lacks one of them.
class VirtualDisplay {
public:
    /// `size` of its screen is as in "800x600".
    explicit VirtualDisplay(const std::string &size = "800x600");
    VirtualDisplay(const VirtualDisplay &) = delete;
    VirtualDisplay &operator=(const VirtualDisplay &) = delete;
    ~VirtualDisplay();

    [[nodiscard]] bool isRunning() const { return m_manager != nullptr; }

    /// As in ":7".
    [[nodiscard]] const std::string &name() const { return m_name; }

private:
    TemporaryFolder m_folder;
    std::string m_name;
    std::unique_ptr<TestProcess> m_server;
    std::unique_ptr<TestProcess> m_manager;
};

/// The test's own environment with some variables set otherwise, each as in "NAME=value".
[[nodiscard]] std::vector<std::string> environmentWith(const std::vector<std::string> &entries);

} // namespace tarnvale
