#include "probes/LocalSites.h"

#include "discovery/text.h"
#include "probes/RegularFile.h"
#include "probes/parseSitesConfig.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <optional>

namespace tarnvale::LocalSites {

namespace fs = std::filesystem;

namespace {

struct ConfigFolder {
    std::string_view path; ///< from the home folder
    TldKeys keys;
};

constexpr std::array configFolders{
    ConfigFolder{"Library/Application Support/Herd/config/valet", TldKeys::tld},
    ConfigFolder{".config/valet", TldKeys::tld},
    ConfigFolder{".valet", TldKeys::tldOrDomain},
};

/// The names in `folder`, in the order of its listing.
std::vector<std::string> namesIn(const std::string &folder) {
    std::vector<std::string> names;
    std::error_code error;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error))
        names.push_back(entry->path().filename().string());
    return names;
}

bool exists(const std::string &path) {
    std::error_code error;
    return fs::exists(fs::symlink_status(path, error));
}

bool isFolder(const std::string &path) {
    std::error_code error;
    return fs::is_directory(path, error);
}

bool isSiteName(std::string_view name) {
    constexpr std::string_view alphabet = "abcdefghijklmnopqrstuvwxyz0123456789.-";
    return !name.starts_with('.') && lowercased(name).find_first_not_of(alphabet) == std::string::npos;
}

/// Nothing in `domain` ends the host of a URL or can't stand in one.
bool isHost(std::string_view domain) {
    constexpr std::string_view others = "\"#%/:<>?@[\\]^`{|}";
    return std::ranges::all_of(domain, [&](char c) {
        const auto byte = static_cast<unsigned char>(c);
        return byte > ' ' && byte != 0x7F && others.find(c) == others.npos;
    });
}

std::optional<Site> siteOf(const std::string &name, const std::string &tld, const std::string &nginxFolder) {
    const std::string domain = lowercased(name) + "." + tld;
    if (!isHost(domain))
        return std::nullopt;
    const bool isSecured = exists(nginxFolder + "/" + domain) || exists(nginxFolder + "/" + name);
    return Site{domain, (isSecured ? "https://" : "http://") + domain};
}

std::vector<Site> sitesOf(const std::string &configFolder, TldKeys keys) {
    constexpr std::size_t largestConfig = 1'000'000;
    const auto content = readRegularFile(configFolder + "/config.json", largestConfig);
    const auto config = content ? parseSitesConfig(*content, keys) : std::nullopt;
    if (!config)
        return {};
    return sites(config->paths, config->tld, configFolder + "/Nginx");
}

} // namespace

std::vector<Site> all(const std::string &home) {
    std::vector<Site> result;
    for (const ConfigFolder &folder : configFolders) {
        const std::vector<Site> found = sitesOf(home + "/" + std::string(folder.path), folder.keys);
        result.insert(result.end(), found.begin(), found.end());
    }
    std::ranges::sort(result);
    const auto repeated = std::ranges::unique(result);
    result.erase(repeated.begin(), repeated.end());
    return result;
}

std::vector<Site> sites(const std::vector<std::string> &folders, const std::string &tld,
                        const std::string &nginxFolder) {
    std::vector<Site> result;
    for (const std::string &folder : folders)
        for (const std::string &name : namesIn(folder))
            if (isSiteName(name) && isFolder(std::string(folder).append("/").append(name)))
                if (const auto site = siteOf(name, tld, nginxFolder))
                    result.push_back(*site);
    return result;
}

std::vector<Site> sites(const ListeningPort &port, const std::string &home) {
    const bool isWebServer = lowercased(port.command).find("nginx") != std::string::npos;
    if (!isWebServer || (port.port != 80 && port.port != 443))
        return {};
    return all(home);
}

} // namespace tarnvale::LocalSites
