#include "discovery/linux/commandLine.h"

#include "discovery/text.h"

#include <algorithm>

namespace tarnvale {

namespace {

constexpr std::size_t longestComm = 15;

std::string_view withoutDeletedMark(std::string_view executable) {
    constexpr std::string_view mark = " (deleted)";
    if (executable.ends_with(mark))
        executable.remove_suffix(mark.size());
    return executable;
}

/// The word behind `option`; empty when there is none.
std::string_view optionValue(const std::vector<std::string_view> &words, std::string_view option) {
    const auto found = std::find(words.begin(), words.end(), option);
    return found == words.end() || found + 1 == words.end() ? std::string_view() : *(found + 1);
}

} // namespace

std::string joinedCommandLine(std::string_view content) {
    const std::size_t last = content.find_last_not_of('\0');
    std::string text(content.substr(0, last == content.npos ? 0 : last + 1));
    std::replace(text.begin(), text.end(), '\0', ' ');
    return repairedUtf8(text);
}

std::vector<std::string_view> commandLineWords(std::string_view content) {
    if (content.ends_with('\0'))
        content.remove_suffix(1);
    else if (content.empty())
        return {};
    return split(content, '\0');
}

bool isCutName(std::string_view comm) {
    return comm.size() >= longestComm;
}

bool isThreadName(std::string_view comm) {
    return comm == "MainThread" || comm == "node-MainThread";
}

std::string wholeCommand(std::string_view comm, std::string_view executable, std::string_view firstWord) {
    const std::string_view file = lastPathComponent(withoutDeletedMark(executable));
    const std::string_view argument = lastPathComponent(firstWord);
    if (isThreadName(comm)) {
        const std::string_view name = file.empty() ? argument : file;
        return repairedUtf8(name.empty() ? comm : name);
    }
    if (isCutName(comm))
        for (const std::string_view name : {file, argument})
            if (name.size() > comm.size() && name.starts_with(comm))
                return repairedUtf8(name);
    return repairedUtf8(comm);
}

std::optional<ProxiedPort> parseDockerProxy(const std::vector<std::string_view> &words) {
    if (words.empty() || lastPathComponent(words.front()) != "docker-proxy" ||
        optionValue(words, "-proto") != "tcp")
        return std::nullopt;
    const auto port = parseInteger<std::uint16_t>(optionValue(words, "-host-port"));
    if (!port || *port == 0)
        return std::nullopt;
    return ProxiedPort{*port, std::string(optionValue(words, "-host-ip"))};
}

} // namespace tarnvale
