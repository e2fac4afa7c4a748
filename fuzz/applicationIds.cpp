#include "discovery/linux/applicationIds.h"

#include "fuzz/check.h"

using namespace tarnvale;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const std::string_view group = asText(data, size);
    const auto ids = applicationIds(group);
    for (const std::string &id : ids)
        check(id.size() <= size, "an id is made of the group's name");
    check(ids.size() <= size, "there aren't more readings than bytes");
    check(ids.empty() || group.find("app-") != group.npos || group.find("flatpak-") != group.npos ||
              group.find("snap.") != group.npos,
          "only groups of applications have ids");
    check(applicationIds("/a/b.slice/" + std::string(group)) == ids, "groups above don't matter");
    return 0;
}
