#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tarnvale {

/// `path` names a runtime that runs other programs: node, bun or deno.
[[nodiscard]] bool isNodeLike(std::string_view path);

/// The coding agent that a process is, by its executable's path or, for a runtime, by the first three words
/// of its command line; nothing for any other process.
[[nodiscard]] std::optional<std::string> detectAgent(std::string_view path,
                                                     const std::optional<std::string> &args);

} // namespace tarnvale
