#pragma once

#include <QUrl>

namespace tarnvale {

/// Whether a page, or a frame in it, may go to `url`: the web on this computer, and blank pages.
[[nodiscard]] bool isAllowedNavigation(const QUrl &url);

} // namespace tarnvale
