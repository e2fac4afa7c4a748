#include "probes/readLogSource.h"

#include "discovery/text.h"
#include "probes/RegularFile.h"

namespace tarnvale {

namespace {

/// `bytes` begin in the middle of a line: what is left of it goes, unless it is all there is.
std::string_view fromWholeLine(std::string_view bytes) {
    const std::size_t end = bytes.find('\n');
    return end == bytes.npos ? bytes : bytes.substr(end + 1);
}

std::string readFileTail(const std::string &path) {
    constexpr std::size_t budget = 48'000;
    const auto file = RegularFile::open(path);
    if (!file)
        return {};
    const bool isCut = file->size() > budget;
    const std::string bytes = file->read(isCut ? file->size() - budget : 0, budget);
    return repairedUtf8(isCut ? fromWholeLine(bytes) : bytes);
}

std::string readContainer(const LogSource &source, const Tools &tools) {
    // Its lines have no limit of their own; no screen shows this much of 300 of them.
    constexpr std::size_t budget = 1'000'000;
    const ToolRun run{.path = source.path,
                      .arguments = {"logs", "--tail", "300", source.container},
                      .mergesError = true,
                      .timeout = std::chrono::seconds(4)};
    std::string text = tools.run(run);
    if (text.size() <= budget)
        return text;
    return repairedUtf8(fromWholeLine(std::string_view(text).substr(text.size() - budget)));
}

} // namespace

std::string readLogSource(const LogSource &source, const Tools &tools) {
    return source.kind == LogSource::Kind::file ? readFileTail(source.path) : readContainer(source, tools);
}

} // namespace tarnvale
