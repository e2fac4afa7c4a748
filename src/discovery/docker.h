#pragma once

#include "discovery/Machine.h"

#include <optional>
#include <string>
#include <string_view>

namespace tarnvale {

/// The single published ports in the output of `docker ps --format "{{.Names}}\t{{.Image}}\t{{.Ports}}"`.
/// Published ranges and ports that aren't published have no entry; of two lines with one port the later wins.
[[nodiscard]] ContainerMap parseDockerPorts(std::string_view text);

/// The docker executable; nothing when none is installed.
[[nodiscard]] std::optional<std::string> dockerPath();

/// Asks the engine for the published ports of its running containers, for at most 3 seconds. Empty without
/// `docker`, or when the engine doesn't answer.
[[nodiscard]] ContainerMap queryDockerPorts(const std::optional<std::string> &docker = dockerPath());

} // namespace tarnvale
