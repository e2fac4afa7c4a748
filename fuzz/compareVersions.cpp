#include "updates/compareVersions.h"

#include "fuzz/check.h"

using namespace tarnvale;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const auto texts = asTexts(data, size);
    for (std::size_t i = 0; i + 2 < texts.size(); ++i) {
        const std::string_view a = texts[i];
        const std::string_view b = texts[i + 1];
        const std::string_view c = texts[i + 2];
        check(compareVersions(a, a) == 0, "a version is as new as itself");
        check((compareVersions(a, b) < 0) == (compareVersions(b, a) > 0), "one of two is newer");
        if (compareVersions(a, b) <= 0 && compareVersions(b, c) <= 0)
            check(compareVersions(a, c) <= 0, "versions have an order");
    }
    return 0;
}
