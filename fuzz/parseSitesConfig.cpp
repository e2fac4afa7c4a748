#include "probes/parseSitesConfig.h"

#include "fuzz/check.h"

using namespace tarnvale;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const std::string_view json = asText(data, size);
    const auto strict = parseSitesConfig(json, TldKeys::tld);
    const auto lenient = parseSitesConfig(json, TldKeys::tldOrDomain);
    check(!strict || strict == lenient, "the usual key wins");
    if (lenient) {
        check(json.find('{') != json.npos, "only an object tells anything");
        check(isUtf8(lenient->tld), "a domain is text");
        for (const std::string &path : lenient->paths)
            check(isUtf8(path), "a path is text");
    }
    return 0;
}
