#pragma once

#include "discovery/Machine.h"

#include <string_view>

namespace tarnvale {

/// The running jobs in the output of `launchctl list`, without desktop applications ("application.") and the
/// operating system's own jobs ("com.apple.").
[[nodiscard]] ServiceLabels parseLaunchdList(std::string_view text);

} // namespace tarnvale
