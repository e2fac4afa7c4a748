#pragma once

#include "store/PortEvent.h"
#include "store/Stack.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// The JSON forms of what is stored; see docs/data.md. A record that lacks a required field, or has one of
/// another kind, spoils its whole list. Fields that aren't known are skipped.
namespace tarnvale {

[[nodiscard]] std::string encodeEvents(const std::vector<PortEvent> &events);
[[nodiscard]] std::optional<std::vector<PortEvent>> decodeEvents(std::string_view json);

[[nodiscard]] std::string encodeStacks(const std::vector<Stack> &stacks);
[[nodiscard]] std::optional<std::vector<Stack>> decodeStacks(std::string_view json);

} // namespace tarnvale
