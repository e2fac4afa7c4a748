#pragma once

#include <chrono>
#include <expected>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tarnvale {

/// One run of a tool.
struct ToolRun {
    std::string path;
    std::vector<std::string> arguments;
    bool mergesError = false; ///< standard error joins the output, else it is dropped
    std::chrono::milliseconds timeout = std::chrono::seconds(10);

    bool operator==(const ToolRun &) const = default;
};

/// A tool that runs beside this program until one of them ends. It goes on when this object goes.
class RunningTool {
public:
    RunningTool() = default;
    RunningTool(const RunningTool &) = delete;
    RunningTool &operator=(const RunningTool &) = delete;
    virtual ~RunningTool() = default;

    /// Sends SIGTERM, unless it has ended.
    virtual void terminate() = 0;
};

/// Outside programs that are found at run time.
class Tools {
public:
    Tools() = default;
    Tools(const Tools &) = delete;
    Tools &operator=(const Tools &) = delete;
    virtual ~Tools() = default;

    /// The executable of `name` ("docker", "brew", "cloudflared", "ngrok", "systemctl") in the folders that
    /// are searched for it. Any thread.
    [[nodiscard]] virtual std::optional<std::string> find(const std::string &name) const = 0;

    /// Runs a tool to its end as `runTool` does. Blocks. Any thread.
    [[nodiscard]] virtual std::string run(const ToolRun &run) const = 0;

    /// Starts a tool with no input and both outputs in one pipe. `onOutput` gets what it writes, in order, as
    /// valid UTF-8 whatever the pieces; `onEnd` comes once, after the last output. Both are called on the
    /// main thread, as long as the returned object lives. An error is the reason in words for the user. Main
    /// thread.
    [[nodiscard]] virtual std::expected<std::shared_ptr<RunningTool>, std::string>
    start(const std::string &path, const std::vector<std::string> &arguments,
          std::function<void(const std::string &)> onOutput, std::function<void()> onEnd) = 0;
};

} // namespace tarnvale
