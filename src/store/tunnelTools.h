#pragma once

#include "platform/Tools.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tarnvale {

/// The programs that make a local port public, the preferred one first.
enum class TunnelTool : std::uint8_t { cloudflared, ngrok };

[[nodiscard]] std::string tunnelToolName(TunnelTool tool);

struct FoundTunnelTool {
    TunnelTool tool = TunnelTool::cloudflared;
    std::string path;
};

/// The preferred one of those that are installed.
[[nodiscard]] std::optional<FoundTunnelTool> findTunnelTool(const Tools &tools);

[[nodiscard]] std::vector<std::string> tunnelArguments(std::int64_t port, TunnelTool tool);

/// The first public address in the output of such a tool, without a path. An address of the service's own
/// interface, which both tools name in their errors, is none.
[[nodiscard]] std::optional<std::string> publicURL(const std::string &output);

} // namespace tarnvale
