#include "discovery/linux/commandLine.h"

#include "fuzz/check.h"

#include <algorithm>
#include <numeric>

using namespace tarnvale;

namespace {

void checkNames(const std::vector<std::string_view> &texts) {
    const auto text = [&](std::size_t i) { return i < texts.size() ? texts[i] : std::string_view(); };
    const std::string name = wholeCommand(text(0), text(1), text(2));
    check(isUtf8(name), "a name is text");
    check(text(0).empty() || !name.empty(), "a name stays a name");
    if (isUtf8(text(0)) && !isThreadName(text(0)))
        check(name.starts_with(text(0)), "a name is only made longer");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const std::string_view content = asText(data, size);
    const std::string joined = joinedCommandLine(content);
    check(isUtf8(joined), "the command line is text");
    check(joined.find('\0') == joined.npos, "without NULs");
    check(joined.empty() == (content.find_first_not_of('\0') == content.npos), "empty only without words");

    const auto words = commandLineWords(content);
    const std::size_t length =
        std::accumulate(words.begin(), words.end(), words.size(),
                        [](std::size_t sum, std::string_view word) { return sum + word.size(); });
    check(length == content.size() + (content.empty() || content.back() == '\0' ? 0 : 1), "no byte is lost");
    check(std::none_of(words.begin(), words.end(),
                       [](std::string_view word) { return word.find('\0') != word.npos; }),
          "a word has no NULs");

    if (const auto proxied = parseDockerProxy(words)) {
        check(proxied->port > 0, "a published port is a port");
        check(words.front().ends_with("docker-proxy"), "only docker's proxy publishes");
    }
    checkNames(asTexts(data, size));
    return 0;
}
