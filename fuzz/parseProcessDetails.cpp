#include "discovery/ProcessDetails.h"

#include "fuzz/check.h"

#include <cmath>

using namespace tarnvale;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const std::string_view text = asText(data, size);
    const Instant now{std::chrono::seconds(1'700'000'000)};
    for (const auto &[pid, details] : parseProcessDetails(text)) {
        check(!std::isnan(details.uptime) && !std::isnan(details.cpu), "numbers are numbers");
        check(text.find(details.args) != text.npos, "the arguments are a part of the text");
        check(details.args.find('\n') == std::string::npos, "the arguments end with their line");
        check(!details.startedAt, "ps tells no exact start");
        check(std::chrono::abs(startOf(details, now) - now) <= std::chrono::hours(24 * 366 * 100),
              "a start lies within a century");
    }
    return 0;
}
