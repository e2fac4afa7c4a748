#pragma once

#include <chrono>
#include <string>
#include <vector>

namespace tarnvale {

/// Runs the tool at `path`, without a shell and without input, and returns what it wrote to its standard
/// output as valid UTF-8; empty when it can't be started. Its exit status plays no part.
///
/// Standard error goes into the same text with `mergeStandardError`, else nowhere. A tool that hasn't ended
/// and closed its output after `timeout` is sent SIGTERM, and whatever arrived counts. The call returns
/// within `timeout` and a second, whatever the tool does:
/// - a child that it left behind with the output still open is waited for until `timeout`, then left alone;
/// - a tool that ignores SIGTERM is left running, with nobody reading: its next write ends it with SIGPIPE,
///   unless it ignores that too;
/// - one that closes its output early and goes on is waited for until `timeout` like any other.
/// Of more than 256 MiB of output only the first 256 MiB are kept; the rest is read and dropped.
///
/// Blocks. Any thread.
[[nodiscard]] std::string runTool(const std::string &path, const std::vector<std::string> &arguments,
                                  bool mergeStandardError, std::chrono::milliseconds timeout);

/// Starts the program at `path` in a session of its own, with no input and no output, and waits at most
/// `timeout` for it to end. It is never signalled: an opener may have become the very browser that it opened.
///
/// Returns whether it could be started. Blocks. Any thread.
bool runOpener(const std::string &path, const std::vector<std::string> &arguments,
               std::chrono::milliseconds timeout);

} // namespace tarnvale
