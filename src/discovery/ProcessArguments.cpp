#include "discovery/ProcessArguments.h"

#include "discovery/text.h"

#include <cstdint>
#include <cstring>

namespace tarnvale::ProcessArguments {

namespace {

/// The strings behind the executable's path and its padding, up to the first empty one.
std::vector<std::string_view> stringsAfterPath(std::string_view bytes) {
    std::vector<std::string_view> strings;
    const std::size_t endOfPath = bytes.find('\0');
    if (endOfPath == bytes.npos)
        return strings;
    const std::size_t first = bytes.find_first_not_of('\0', endOfPath);
    if (first == bytes.npos)
        return strings;
    bytes.remove_prefix(first);
    while (!bytes.empty() && bytes.front() != '\0') {
        const std::string_view text = bytes.substr(0, bytes.find('\0'));
        strings.push_back(text);
        bytes.remove_prefix(std::min(text.size() + 1, bytes.size()));
    }
    return strings;
}

} // namespace

void addEnvironmentEntry(std::string_view entry, std::map<std::string, std::string> &environment) {
    const std::size_t equals = entry.find('=');
    if (equals != entry.npos)
        environment[repairedUtf8(entry.substr(0, equals))] = repairedUtf8(entry.substr(equals + 1));
}

std::optional<Info> parse(std::string_view bytes) {
    std::int32_t count = 0;
    if (bytes.size() <= sizeof count)
        return std::nullopt;
    std::memcpy(&count, bytes.data(), sizeof count);
    const auto strings = stringsAfterPath(bytes.substr(sizeof count));
    if (count < 1 || strings.size() < static_cast<std::size_t>(count))
        return std::nullopt;
    Info info;
    for (std::size_t i = 0; i < strings.size(); ++i) {
        if (i < static_cast<std::size_t>(count))
            info.arguments.push_back(repairedUtf8(strings[i]));
        else
            addEnvironmentEntry(strings[i], info.environment);
    }
    return info;
}

} // namespace tarnvale::ProcessArguments
