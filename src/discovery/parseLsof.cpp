#include "discovery/parseLsof.h"

#include "discovery/SocketMerger.h"
#include "discovery/text.h"

#include <optional>

namespace tarnvale {

namespace {

struct SocketName {
    std::string_view host;
    std::int64_t port = 0;
};

/// "127.0.0.1:3000", "[::1]:3000" or "*:3000".
std::optional<SocketName> parseSocketName(std::string_view name) {
    const std::size_t colon = name.rfind(':');
    if (colon == std::string_view::npos)
        return std::nullopt;
    const auto port = parseInteger<std::int64_t>(name.substr(colon + 1));
    if (!port)
        return std::nullopt;
    return SocketName{name.substr(0, colon), *port};
}

bool isLoopback(std::string_view host) {
    return host.starts_with("127.") || host == "[::1]" || host == "localhost";
}

} // namespace

// Sample, two sockets of one process:
//   p4242
//   cnode
//   f21
//   n127.0.0.1:3000
//   f22
//   n[::1]:3000
std::vector<ListeningPort> parseListeningSockets(std::string_view text) {
    SocketMerger merger;
    std::optional<Pid> pid;
    std::string_view command;
    for (const std::string_view line : nonEmptyLines(text)) {
        const std::string_view value = line.substr(1);
        if (line.front() == 'p') {
            pid = parseInteger<Pid>(value);
        } else if (line.front() == 'c') {
            command = value;
        } else if (line.front() == 'n' && pid) {
            if (const auto name = parseSocketName(value))
                merger.add(*pid, command, name->port, !isLoopback(name->host));
        }
    }
    return merger.take();
}

// Sample: "p4242", "fcwd", "n/Users/me/my shop", each on a line of its own.
std::unordered_map<Pid, std::string> parseWorkingDirectories(std::string_view text) {
    std::unordered_map<Pid, std::string> directories;
    std::optional<Pid> pid;
    for (const std::string_view line : nonEmptyLines(text)) {
        if (line.front() == 'p')
            pid = parseInteger<Pid>(line.substr(1));
        else if (line.front() == 'n' && pid)
            directories[*pid] = line.substr(1);
    }
    return directories;
}

} // namespace tarnvale
