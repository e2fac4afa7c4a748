#include "probes/ProjectDetector.h"

#include "fuzz/check.h"

#include <set>

using namespace tarnvale;

namespace {

/// Each text of the input is a marker: its first line the name, the rest what the file holds.
ProjectDetector::Markers markersIn(const std::vector<std::string_view> &texts) {
    ProjectDetector::Markers markers;
    for (const std::string_view text : texts) {
        const std::size_t end = text.find('\n');
        markers[std::string(text.substr(0, end))] = end == text.npos ? "" : text.substr(end + 1);
    }
    return markers;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const ProjectDetector::Markers markers = markersIn(asTexts(data, size));
    std::set<std::string> known;
    for (const auto &[args, source, recommended] : ProjectDetector::suggestions(markers)) {
        check(!args.empty() && args.find_first_of("\n\r") == args.npos, "a command is one line");
        check(args.front() != ' ' && args.back() != ' ', "a command is trimmed");
        check(known.insert(args).second, "a command comes once");
        check(!source.empty(), "a command has a source");
        check(recommended <= (source != "Docker Compose"), "containers are never recommended");
    }
    for (const auto &[name, text] : markers)
        for (const std::string &script : ProjectDetector::scriptNames(text))
            check(isUtf8(script), "a name is text");
    return 0;
}
