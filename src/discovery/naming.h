#pragma once

#include <string>
#include <string_view>

namespace tarnvale {

/// `command` without a trailing "-arm64", "-x86_64" or "-amd64"; its case stays.
[[nodiscard]] std::string_view strippingArchSuffix(std::string_view command);

/// `command` as the tables of known tools write it: lower case, no architecture suffix, and "httpd" for
/// what Debian calls `apache2`.
[[nodiscard]] std::string canonicalCommand(std::string_view command);

/// `command` is one of the databases, servers and mail catchers that count wherever they run.
[[nodiscard]] bool isKnownServiceCommand(std::string_view command);

/// `name` tells nothing about a project: "bin", "/", "v20.11.0". Exact and case-sensitive.
[[nodiscard]] bool isGenericFolderName(std::string_view name);

/// `name` is a folder that a web server serves, so that its parent is the project.
[[nodiscard]] bool isWebRootFolder(std::string_view name);

} // namespace tarnvale
