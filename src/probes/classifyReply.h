#pragma once

#include "probes/Health.h"

#include <string_view>

namespace tarnvale {

/// What the first bytes of a reply, of any encoding and cut anywhere, say about a server: a status line of
/// HTTP/1.x (RFC 9112, section 4) or something unknown.
[[nodiscard]] Health classifyReply(std::string_view bytes);

} // namespace tarnvale
