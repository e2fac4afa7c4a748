#include "discovery/linux/ProcStat.h"

#include "fuzz/check.h"

using namespace tarnvale;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const std::string_view content = asText(data, size);
    const auto stat = parseProcStat(content);
    if (stat) {
        check(content.find("(" + stat->comm + ")") != content.npos, "the name is what the brackets hold");
        const std::size_t end = content.rfind(')');
        check(content.find(stat->state, end) != content.npos, "the state comes behind the name");
        // Whatever the name, the rest is read alike.
        const std::string renamed = "1 (a) R (b)" + std::string(content.substr(end + 1));
        auto other = parseProcStat(renamed);
        check(other.has_value() && other->comm == "a) R (b", "any name will do");
        other->comm = stat->comm;
        check(*other == *stat, "the name doesn't change the rest");
    }
    return 0;
}
