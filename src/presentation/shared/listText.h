#pragma once

#include <QCoreApplication>
#include <QString>

namespace tarnvale {

/// A text of the panel's list in the user's language.
[[nodiscard]] inline QString listText(const char *text) {
    return QCoreApplication::translate("PortListView", text);
}

} // namespace tarnvale
