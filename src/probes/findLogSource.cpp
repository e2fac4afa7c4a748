#include "probes/findLogSource.h"

#include "platform/Tools.h"
#include "probes/projectLog.h"

#include <filesystem>

namespace tarnvale {

std::optional<LogSource> findLogSource(const ListeningPort &port, const std::optional<std::string> &launchLog,
                                       const Tools &tools) {
    const auto container = port.containerName();
    const auto docker = container ? tools.find("docker") : std::nullopt;
    if (docker)
        return LogSource::docker(*docker, *container);
    std::error_code error;
    if (launchLog && std::filesystem::exists(*launchLog, error))
        return LogSource::file(*launchLog);
    if (const auto log = port.cwd ? findProjectLog(*port.cwd) : std::nullopt)
        return LogSource::file(log->path);
    return std::nullopt;
}

} // namespace tarnvale
