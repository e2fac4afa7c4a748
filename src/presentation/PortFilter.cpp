#include "presentation/PortFilter.h"

#include <QCoreApplication>

namespace tarnvale {

QString title(PortFilter filter) {
    switch (filter) {
    case PortFilter::all:
        return QCoreApplication::translate("PortUI", "All");
    case PortFilter::agents:
        return QCoreApplication::translate("PortUI", "Agents");
    case PortFilter::web:
        return title(PortGroup::web);
    case PortFilter::services:
        return QCoreApplication::translate("PortUI", "Services");
    case PortFilter::other:
        return title(PortGroup::other);
    }
    return {};
}

bool matchesFilter(const ListeningPort &port, PortFilter filter, const WebTest &isWeb) {
    switch (filter) {
    case PortFilter::all:
        return true;
    case PortFilter::agents:
        return port.agent.has_value();
    case PortFilter::web:
        return isWeb(port);
    case PortFilter::services:
        return portGroup(port, isWeb) == PortGroup::services;
    case PortFilter::other:
        return portGroup(port, isWeb) == PortGroup::other;
    }
    return false;
}

} // namespace tarnvale
