#include "discovery/docker.h"

#include "discovery/findTool.h"
#include "discovery/runTool.h"
#include "discovery/text.h"

#include <algorithm>

namespace tarnvale {

namespace {

/// Calls `found` with each number that stands between a colon and an arrow: the matches of `:(\d+)->`.
template<typename Found> void forEachPublishedPort(std::string_view ports, Found found) {
    for (std::size_t arrow = ports.find("->"); arrow != ports.npos; arrow = ports.find("->", arrow + 2)) {
        std::size_t first = arrow;
        while (first > 0 && ports[first - 1] >= '0' && ports[first - 1] <= '9')
            --first;
        if (first == arrow || first == 0 || ports[first - 1] != ':')
            continue;
        if (const auto port = parseInteger<std::int64_t>(ports.substr(first, arrow - first)))
            found(*port);
    }
}

} // namespace

// Sample row: "web<tab>nginx:1.25<tab>0.0.0.0:8080->80/tcp, [::]:8080->80/tcp"
ContainerMap parseDockerPorts(std::string_view text) {
    ContainerMap containers;
    for (const std::string_view line : nonEmptyLines(text)) {
        const auto pieces = split(line, '\t');
        if (pieces.size() != 3)
            continue;
        std::string description(pieces[0]);
        description += " · ";
        description += pieces[1];
        forEachPublishedPort(pieces[2], [&](std::int64_t port) { containers[port] = description; });
    }
    return containers;
}

std::optional<std::string> dockerPath() {
    const std::string home = homeFolder();
    std::vector<std::string> candidates{"/usr/local/bin/docker", "/opt/homebrew/bin/docker",
                                        home + "/.orbstack/bin/docker"};
    for (const std::string &folder : systemToolFolders(home))
        candidates.push_back(folder + "/docker");
    return firstExecutable(candidates);
}

ContainerMap queryDockerPorts(const std::optional<std::string> &docker) {
    if (!docker)
        return {};
    using namespace std::chrono_literals;
    return parseDockerPorts(
        runTool(*docker, {"ps", "--format", "{{.Names}}\t{{.Image}}\t{{.Ports}}"}, false, 3s));
}

} // namespace tarnvale
