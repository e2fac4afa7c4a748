#pragma once

#include <cstddef>
#include <string>

namespace tarnvale {

/// The path of the log of the command `args` launched in the folder `cwd`: "shop-npm-run-dev.log" for
/// "npm run dev" in "/home/me/shop". Two commands that differ only in punctuation share one.
[[nodiscard]] std::string launchLogURL(const std::string &logsFolder, const std::string &args,
                                       const std::string &cwd);

/// The last `maxBytes` bytes of a file as valid UTF-8, maybe cut inside a line; empty when it can't be read.
/// Never waits: what isn't a plain file counts as empty.
[[nodiscard]] std::string readLogTail(const std::string &path, std::size_t maxBytes);

} // namespace tarnvale
