#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace tarnvale {

class Machine;

/// What the command line reaches outside itself.
struct CommandLineWorld {
    /// Writes to standard output; false when not all of it could be written.
    std::function<bool(std::string_view)> writeOutput;
    std::function<void(std::string_view)> writeError;
    /// The machine to scan, made when a command needs it.
    std::function<Machine &()> machine;
    std::function<void(std::chrono::milliseconds)> sleep;
    /// Opens a URL with the desktop's handler.
    std::function<void(const std::string &)> openURL;
    std::uint32_t uid = 0;

    /// This machine and this process's own streams.
    [[nodiscard]] static CommandLineWorld real();
};

} // namespace tarnvale
