#pragma once

#include <cstdint>
#include <string>

namespace tarnvale {

/// Where the output of a server can be read.
struct LogSource {
    enum class Kind : std::uint8_t {
        file,   ///< a log file
        docker, ///< the output of a container
    };

    Kind kind = Kind::file;
    std::string path;      ///< of the log file, or of the docker executable
    std::string container; ///< the container's name; empty for a file

    [[nodiscard]] static LogSource file(const std::string &path) { return {Kind::file, path, {}}; }
    [[nodiscard]] static LogSource docker(const std::string &path, const std::string &container) {
        return {Kind::docker, path, container};
    }

    bool operator==(const LogSource &) const = default;
};

} // namespace tarnvale
