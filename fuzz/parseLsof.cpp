#include "discovery/parseLsof.h"

#include "fuzz/check.h"

#include <set>
#include <string>
#include <utility>

using namespace tarnvale;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const std::string_view text = asText(data, size);
    const auto ports = parseListeningSockets(text);
    std::set<std::pair<std::string, std::int64_t>> keys;
    for (std::size_t i = 0; i < ports.size(); ++i) {
        const ListeningPort &port = ports[i];
        check(keys.emplace(port.command, port.port).second, "one record for each command and port");
        check(i == 0 || std::pair(ports[i - 1].port, ports[i - 1].pid) <= std::pair(port.port, port.pid),
              "sorted by port, then pid");
        check(text.find(port.command) != text.npos, "a command is a part of the text");
        check(!port.cwd && !port.args && !port.service && !port.container, "nothing else is made up");
    }
    check(parseListeningSockets(std::string(text) + "\n") == ports, "a final line feed changes nothing");
    for (const auto &[pid, folder] : parseWorkingDirectories(text))
        check(text.find(folder) != text.npos && folder.find('\n') == folder.npos,
              "a folder is a part of one line");
    return 0;
}
