#include "discovery/docker.h"

#include "fuzz/check.h"

using namespace tarnvale;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const std::string_view text = asText(data, size);
    for (const auto &[port, description] : parseDockerPorts(text)) {
        check(port >= 0, "a port is written in digits alone");
        check(description.find(" · ") != std::string::npos, "a name and an image");
        check(description.find_first_of("\t\n") == std::string::npos, "both are parts of one row");
        check(text.find("->") != text.npos, "only published ports count");
    }
    return 0;
}
