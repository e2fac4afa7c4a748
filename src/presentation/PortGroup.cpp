#include "presentation/PortGroup.h"

#include "presentation/ToolStyle.h"

#include <QCoreApplication>

namespace tarnvale {

QString title(PortGroup group) {
    switch (group) {
    case PortGroup::web:
        return QCoreApplication::translate("PortUI", "Web");
    case PortGroup::services:
        return QCoreApplication::translate("PortUI", "Databases & Services");
    case PortGroup::other:
        return QCoreApplication::translate("PortUI", "Other");
    }
    return {};
}

PortGroup portGroup(const ListeningPort &port, const WebTest &isWeb) {
    if (isWeb(port))
        return PortGroup::web;
    if (port.service || port.container || toolStyle(port).isDatabase)
        return PortGroup::services;
    return PortGroup::other;
}

} // namespace tarnvale
