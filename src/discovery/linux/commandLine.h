#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarnvale {

/// The command line in `/proc/<pid>/cmdline` as one text: its words joined by blanks, the NULs at its end
/// dropped, as valid UTF-8. Empty for a kernel thread or a zombie.
[[nodiscard]] std::string joinedCommandLine(std::string_view content);

/// The words of `/proc/<pid>/cmdline`, each ended by a NUL, as bytes. Empty words count.
[[nodiscard]] std::vector<std::string_view> commandLineWords(std::string_view content);

/// `comm` may have been cut by the kernel, which keeps 15 bytes of a name.
[[nodiscard]] bool isCutName(std::string_view comm);

/// `comm` only says which thread it is ("MainThread", "node-MainThread"), as newer versions of Node do.
[[nodiscard]] bool isThreadName(std::string_view comm);

/// The name of a process whose `comm` is cut or only a thread's: the file name of `executable` or of the
/// command line's first word, where it fits; else `comm`. `executable` may be empty; " (deleted)" is dropped.
[[nodiscard]] std::string wholeCommand(std::string_view comm, std::string_view executable,
                                       std::string_view firstWord);

/// The port that a `docker-proxy` publishes.
struct ProxiedPort {
    std::uint16_t port = 0;
    std::string hostAddress; ///< as written: "0.0.0.0", "::", "127.0.0.1"

    bool operator==(const ProxiedPort &) const = default;
};

/// What a `docker-proxy` with these words publishes over TCP
/// (`docker-proxy -proto tcp -host-ip 0.0.0.0 -host-port 8080 …`); nothing for any other command line.
[[nodiscard]] std::optional<ProxiedPort> parseDockerProxy(const std::vector<std::string_view> &words);

} // namespace tarnvale
