#include "discovery/isDevPort.h"

#include "discovery/naming.h"

namespace tarnvale {

bool isDevPort(const ListeningPort &port) {
    if (port.isNoise())
        return false;
    if (port.container || port.brewService() || isKnownServiceCommand(port.command))
        return true;
    return port.cwd && *port.cwd != "/";
}

} // namespace tarnvale
