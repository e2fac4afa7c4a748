#include "discovery/parseLaunchdList.h"

#include "fuzz/check.h"

using namespace tarnvale;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const std::string_view text = asText(data, size);
    for (const auto &[pid, service] : parseLaunchdList(text)) {
        check(!service.label.empty() && service.label.find_first_of("\t\n") == std::string::npos,
              "a label is a part of one row");
        check(!service.label.starts_with("com.apple.") && !service.label.starts_with("application."),
              "jobs of the system and applications are left out");
        check(text.find(service.label) != text.npos, "a label is a part of the text");
        check(service.manager == ServiceManager::launchd, "launchd's own");
    }
    return 0;
}
