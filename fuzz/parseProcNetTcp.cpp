#include "discovery/linux/parseProcNetTcp.h"

#include "fuzz/check.h"

#include <algorithm>
#include <string>

using namespace tarnvale;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const std::string_view table = asText(data, size);
    const auto listeners = parseProcNetTcp(table);
    const auto rows = static_cast<std::size_t>(std::count(table.begin(), table.end(), '\n')) + 1;
    check(listeners.size() <= rows, "one listener a row");
    for (const Listener &listener : listeners) {
        check(!listener.cgroup, "the table tells no control group");
        check(table.find(std::to_string(listener.inode)) != table.npos, "an inode is a part of the table");
        check(table.find(" 0A ") != table.npos || table.find("0A") != table.npos,
              "only listening sockets count");
    }
    // A row of its own changes nothing for the others.
    const auto more = parseProcNetTcp("junk\n" + std::string(table) + "\njunk");
    check(more == listeners, "rows that can't be read are skipped");
    return 0;
}
