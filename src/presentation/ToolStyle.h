#pragma once

#include "discovery/ListeningPort.h"
#include "presentation/Tint.h"

#include <optional>
#include <string_view>

namespace tarnvale {

/// How the tool behind a port looks. Every text lives as long as the program.
struct ToolStyle {
    std::string_view symbol; ///< shown when there is neither a logo nor an application
    Tint tint;
    bool isDatabase = false;                             ///< the port counts as a database or a service
    std::optional<std::string_view> logo = std::nullopt; ///< the name of an image resource
    std::optional<std::string_view> appID =
        std::nullopt;         ///< an application whose icon is shown where it is installed
    bool inContainer = false; ///< the tile carries Docker's badge

    bool operator==(const ToolStyle &) const = default;
};

/// The style of `port`, from the first known tool whose name is part of its command, container or display
/// name. What works outside any project and is no known service is a system process, with a gear.
[[nodiscard]] ToolStyle toolStyle(const ListeningPort &port);

} // namespace tarnvale
