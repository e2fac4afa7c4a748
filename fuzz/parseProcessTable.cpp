#include "discovery/processTree.h"

#include "fuzz/check.h"

#include <set>

using namespace tarnvale;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const std::string_view text = asText(data, size);
    const ProcessTable table = parseProcessTable(text);
    for (const auto &[pid, node] : table) {
        check(!node.path.empty() && text.find(node.path) != text.npos, "a path is a part of the text");
        const auto chain = ancestorChain(pid, table);
        check(chain.size() <= 64, "a chain ends");
        check(chain.empty() == (pid < 2), "a chain begins with the process itself");
        for (std::size_t i = 0; i < chain.size(); ++i) {
            check(chain[i] >= 2 && table.contains(chain[i]), "a chain stays within the table");
            check(chain[i] == (i == 0 ? pid : table.at(chain[i - 1]).ppid),
                  "a chain goes from child to parent");
        }
    }
    return 0;
}
