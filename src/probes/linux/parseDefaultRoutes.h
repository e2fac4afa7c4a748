#pragma once

#include "probes/readDefaultRoutes.h"

#include <string_view>

namespace tarnvale {

/// The default routes in `table` (`/proc/net/route`, proc(5)) that are up and lead somewhere. Rows of another
/// form are skipped.
[[nodiscard]] DefaultRoutes parseDefaultRoutes(std::string_view table);

} // namespace tarnvale
