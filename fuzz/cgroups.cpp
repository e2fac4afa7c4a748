#include "discovery/linux/cgroups.h"

#include "fuzz/check.h"

#include <algorithm>

using namespace tarnvale;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const std::string_view content = asText(data, size);
    const std::string path = parseCgroupFile(content);
    check(content.find(path) != content.npos && path.find('\n') == path.npos, "a path is a part of one line");

    for (const Pid pid : parseCgroupProcs(content))
        check(pid > 0, "a member is a process");

    for (const std::string_view group : {std::string_view(path), content}) {
        const std::string_view unit = unitOfCgroup(group);
        check(group.find(unit) != group.npos && unit.find('/') == unit.npos, "a unit is a part of the path");
        check(!isServiceUnit(unit) || unit.ends_with(".service"), "a service is called one");
        check(!isManagerCgroup(group) || !isServiceUnit(unit), "a manager's group is no service's");
    }

    const std::string mount = parseCgroupMount(content);
    check(content.find(mount) != content.npos && mount.find('\n') == mount.npos,
          "a mount point is a part of one line");
    return 0;
}
