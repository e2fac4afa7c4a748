#include "probes/projectLog.h"

#include <filesystem>

namespace tarnvale {

std::optional<ProjectLog> findProjectLog(const std::string &folder) {
    static const std::string laravel = "storage/logs/laravel.log";
    const std::filesystem::path root(folder);
    for (const auto &above : {root, root.parent_path()}) {
        std::error_code error;
        if (const auto log = above / laravel; std::filesystem::exists(log, error))
            return ProjectLog{log.string(), laravel};
    }
    return std::nullopt;
}

} // namespace tarnvale
