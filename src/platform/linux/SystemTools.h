#pragma once

#include "platform/Tools.h"

namespace tarnvale {

/// The tools of this machine. PATH plays no part: that of a program started by the desktop isn't the user's.
class SystemTools : public Tools {
public:
    /// Searches the folders in which such tools are kept.
    SystemTools() = default;

    /// Searches `folders` alone, best first.
    explicit SystemTools(std::vector<std::string> folders) : m_folders(std::move(folders)) {}

    [[nodiscard]] std::optional<std::string> find(const std::string &name) const override;
    [[nodiscard]] std::string run(const ToolRun &run) const override;
    [[nodiscard]] std::expected<std::shared_ptr<RunningTool>, std::string>
    start(const std::string &path, const std::vector<std::string> &arguments,
          std::function<void(const std::string &)> onOutput, std::function<void()> onEnd) override;

private:
    std::optional<std::vector<std::string>> m_folders; ///< none: the standard ones
};

} // namespace tarnvale
