#pragma once

#include "commands/automation/ApplicationRequest.h"
#include "commands/automation/Claim.h"

#include <QDBusConnection>

#include <chrono>
#include <optional>

namespace tarnvale {

/// Takes the application's name on `bus`, for as long as the connection lives; if another program has it,
/// asks that one for `request`, if there is one. An owner that goes meanwhile leaves the name to us.
///
/// Everything that answers under the name must be registered before. Blocks, for `patience` at the most where
/// the owner doesn't answer.
[[nodiscard]] Claim claimOnBus(const QDBusConnection &bus, const std::optional<ApplicationRequest> &request,
                               std::chrono::milliseconds patience);

} // namespace tarnvale
