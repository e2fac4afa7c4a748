#pragma once

#include "discovery/text.h"

#include <QString>

#include <string_view>

namespace tarnvale {

/// `bytes`, which a process may have written, as text to be shown: UTF-8 repaired, control and text-direction
/// characters replaced.
[[nodiscard]] inline QString plainText(std::string_view bytes) {
    return QString::fromStdString(printable(bytes));
}

} // namespace tarnvale
