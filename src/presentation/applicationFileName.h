#pragma once

#include <functional>
#include <string>

namespace tarnvale {

/// The name that users know an application by, from the path in `ListeningPort::hostApp`.
using ApplicationName = std::function<std::string(const std::string &hostApp)>;

/// The last component of `hostApp` without its extension: the name where nobody knows a better one.
[[nodiscard]] std::string applicationFileName(const std::string &hostApp);

} // namespace tarnvale
