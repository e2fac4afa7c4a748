#pragma once

#include "discovery/ListeningPort.h"
#include "presentation/MenuEntry.h"
#include "probes/LocalSites.h"
#include "probes/projectLog.h"
#include "store/tunnelTools.h"

#include <optional>
#include <string>
#include <vector>

namespace tarnvale {

class Desktop;
class PortStore;

/// What the menu of a port must know that lies on the disk.
struct PortFiles {
    std::optional<std::string> launchLog; ///< the path, where the file exists
    std::optional<ProjectLog> projectLog;
    std::vector<LocalSites::Site> sites;
    std::optional<TunnelTool> tunnelTool; ///< the one that sharing would run

    bool operator==(const PortFiles &) const = default;
};

/// Reads them for `port`, whose launch log would be at `launchLog`. Blocks as long as the disk does. Any
/// thread.
[[nodiscard]] PortFiles readPortFiles(const ListeningPort &port, const std::optional<std::string> &launchLog,
                                      const Tools &tools);

/// The one menu of a port: `isWeb` is what its row says. Its entries act on `store` and `desktop`, which
/// outlive the menu.
[[nodiscard]] std::vector<MenuEntry> portMenu(PortStore &store, Desktop &desktop, const ListeningPort &port,
                                              bool isWeb, const PortFiles &files);

} // namespace tarnvale
