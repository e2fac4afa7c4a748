#include "probes/RegularFile.h"
#include "probes/linux/parseDefaultRoutes.h"

namespace tarnvale {

DefaultRoutes readDefaultRoutes() {
    constexpr std::size_t mostRead = 1'000'000;
    const auto table = RegularFile::open("/proc/net/route");
    return table ? parseDefaultRoutes(table->read(0, mostRead)) : DefaultRoutes();
}

} // namespace tarnvale
