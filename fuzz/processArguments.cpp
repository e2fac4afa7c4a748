#include "discovery/ProcessArguments.h"

#include "fuzz/check.h"

#include <cstring>

using namespace tarnvale;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const auto info = ProcessArguments::parse(asText(data, size));
    if (!info)
        return 0;
    std::int32_t count = 0;
    check(size > sizeof count, "a reply has a count");
    std::memcpy(&count, data, sizeof count);
    check(count > 0 && info->arguments.size() == static_cast<std::size_t>(count),
          "as many arguments as counted");
    for (const std::string &word : info->arguments)
        check(!word.empty() && isUtf8(word) && word.find('\0') == word.npos, "a word is text");
    for (const auto &[key, value] : info->environment) {
        check(isUtf8(key) && isUtf8(value), "the environment is text");
        check(key.find('=') == key.npos, "a key ends at the first sign");
    }
    return 0;
}
