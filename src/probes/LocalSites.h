#pragma once

#include "discovery/ListeningPort.h"
#include "discovery/findTool.h"

#include <string>
#include <vector>

/// The sites that local PHP environments serve through one web server: each folder in a parked folder is a
/// domain. All of it reads the disk anew, blocks as long as that takes, and gives fewer sites where something
/// can't be read. Any thread.
namespace tarnvale::LocalSites {

struct Site {
    std::string domain; ///< "shop.test"
    std::string url;    ///< "https://shop.test" for a secured site, else with "http"

    auto operator<=>(const Site &) const = default;
};

/// The sites of all environments of the user whose home folder that is, each once, sorted by domain.
[[nodiscard]] std::vector<Site> all(const std::string &home = homeFolder());

/// The sites of the parked `folders`, in the order of the listings. A site is secured when `nginxFolder`
/// holds an item of its domain's or its folder's name.
[[nodiscard]] std::vector<Site> sites(const std::vector<std::string> &folders, const std::string &tld,
                                      const std::string &nginxFolder);

/// The sites behind `port`: all of them for nginx on port 80 or 443, else none.
[[nodiscard]] std::vector<Site> sites(const ListeningPort &port, const std::string &home = homeFolder());

} // namespace tarnvale::LocalSites
