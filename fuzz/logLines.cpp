#include "probes/logLines.h"

#include "fuzz/check.h"

#include <algorithm>

using namespace tarnvale;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const std::string_view text = asText(data, size);
    const std::vector<std::string> lines = logLines(text);
    check(!lines.empty() && lines.size() <= 400, "some lines, and not too many");
    const auto feeds = static_cast<std::size_t>(std::ranges::count(text, '\n'));
    check(lines.size() == std::min<std::size_t>(feeds + 1, 400), "no line feed is lost or made");
    std::size_t shown = 0;
    for (const std::string &line : lines) {
        check(line.find('\n') == line.npos, "a line is one line");
        shown += line.size() + 1;
        static_cast<void>(logLineKind(line));
    }
    check(shown <= size + 1, "nothing is added");
    check(isUtf8(text) <= std::ranges::all_of(lines, isUtf8), "text stays text");
    return 0;
}
