#include "probes/linux/parseDefaultRoutes.h"

#include "fuzz/check.h"

using namespace tarnvale;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const std::string_view table = asText(data, size);
    for (const auto &[name, metric] : parseDefaultRoutes(table)) {
        check(!name.empty() && table.find(name) != table.npos, "a name stands in the table");
        check(name.find_first_of(" \t\n") == name.npos, "a name is one word");
    }
    return 0;
}
