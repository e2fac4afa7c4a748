#include "discovery/ListeningPort.h"

#include "discovery/naming.h"
#include "discovery/sortUnique.h"
#include "discovery/text.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace tarnvale {

namespace {

constexpr std::array<std::string_view, 5> containerRuntimeFragments{"docker", "vpnkit", "orbstack", "colima",
                                                                    "podman"};

constexpr std::array<std::string_view, 17> noiseFragments{
    "gradledaemon",    "kotlincompiledaemon", "code helper",   "cursor helper",
    "language-server", "languageserver",      "langserver",    "devsense",
    "intelephense",    "jetbrains",           "intellij",      "phpstorm",
    "webstorm",        "sourcekit-lsp",       "rust-analyzer", "gopls",
    "tsserver"};

constexpr std::array<std::string_view, 2> brewPrefixes{"sh.brew.", "homebrew.mxcl."};

struct DisplayRule {
    std::string_view fragment;
    std::string_view name;
};

constexpr std::string_view herdFragment = "/herd/";

constexpr std::array<DisplayRule, 5> displayRules{{
    {"artisan serve", "Laravel"},
    {"illuminate/foundation/resources/server.php", "Laravel"},
    {"gradledaemon", "Gradle daemon"},
    {"kotlincompiledaemon", "Kotlin daemon"},
    {herdFragment, "Herd"},
}};

template<std::size_t N>
bool containsAny(std::string_view text, const std::array<std::string_view, N> &fragments) {
    return std::any_of(fragments.begin(), fragments.end(),
                       [&](std::string_view fragment) { return text.find(fragment) != text.npos; });
}

std::string_view orEmpty(const std::optional<std::string> &text) {
    return text ? std::string_view(*text) : std::string_view();
}

/// The formula in a unit that Homebrew wrote on Linux, "homebrew.{formula}.service".
std::optional<std::string_view> brewFormulaOfUnit(std::string_view unit) {
    constexpr std::string_view prefix = "homebrew.";
    constexpr std::string_view suffix = ".service";
    if (unit.size() <= prefix.size() + suffix.size() || !unit.starts_with(prefix) || !unit.ends_with(suffix))
        return std::nullopt;
    return unit.substr(prefix.size(), unit.size() - prefix.size() - suffix.size());
}

/// Whether that is a name that tells one project from another.
bool isProject(const std::optional<std::string> &name) {
    return name && !isGenericFolderName(*name);
}

} // namespace

std::string ListeningPort::id() const {
    return std::to_string(pid) + ":" + std::to_string(port);
}

bool ListeningPort::isDockerProxy() const {
    return containsAny(lowercased(command), containerRuntimeFragments);
}

bool ListeningPort::isNoise() const {
    const std::string name = lowercased(command);
    return name.ends_with(".ls") || containsAny(name + " " + lowercased(orEmpty(args)), noiseFragments);
}

std::optional<std::string> ListeningPort::brewService() const {
    if (!service)
        return std::nullopt;
    for (const std::string_view prefix : brewPrefixes)
        if (service->starts_with(prefix))
            return service->substr(prefix.size());
    if (serviceManager != ServiceManager::launchd)
        if (const auto formula = brewFormulaOfUnit(*service))
            return std::string(*formula);
    return std::nullopt;
}

std::optional<std::string> ListeningPort::containerName() const {
    const std::string_view whole = orEmpty(container);
    const std::string_view name = whole.substr(0, whole.find(" · "));
    return name.empty() ? std::nullopt : std::optional<std::string>(name);
}

std::string ListeningPort::displayName() const {
    const std::string folder = lowercased(orEmpty(cwd));
    const std::string searched = lowercased(orEmpty(args)) + " " + folder;
    // A PHP process mentions Herd's own folders in its arguments wherever it runs.
    const bool isPhpOutsideHerd =
        lowercased(command).starts_with("php") && folder.find(herdFragment) == folder.npos;
    for (const DisplayRule &rule : displayRules) {
        if (rule.fragment == herdFragment && isPhpOutsideHerd)
            continue;
        if (searched.find(rule.fragment) != searched.npos)
            return std::string(rule.name);
    }
    const auto formula = brewService();
    return formula && !formula->empty() ? *formula : std::string(strippingArchSuffix(command));
}

std::optional<std::string> ListeningPort::projectName() const {
    if (!cwd)
        return std::nullopt;
    const std::string_view folder = lastPathComponent(*cwd);
    return std::string(isWebRootFolder(folder) ? lastPathComponent(parentPath(*cwd)) : folder);
}

bool ListeningPort::hasProject() const {
    return isProject(projectName());
}

std::string ListeningPort::title() const {
    if (container)
        return *container;
    auto project = projectName();
    return isProject(project) ? *std::move(project) : displayName();
}

std::vector<Pid> pidsOf(const std::vector<ListeningPort> &ports) {
    std::vector<Pid> pids;
    pids.reserve(ports.size());
    for (const ListeningPort &port : ports)
        pids.push_back(port.pid);
    sortUnique(pids);
    return pids;
}

} // namespace tarnvale

std::size_t
std::hash<tarnvale::ListeningPort>::operator()(const tarnvale::ListeningPort &port) const noexcept {
    std::size_t seed = 0;
    const auto mix = [&seed](const auto &field) {
        const std::size_t value = std::hash<std::decay_t<decltype(field)>>{}(field);
        seed ^= value + 0x9e3779b97f4a7c15u + (seed << 6) + (seed >> 2);
    };
    mix(port.pid);
    mix(port.command);
    mix(port.port);
    mix(port.isExposed);
    mix(port.cwd);
    mix(port.startedAt ? std::optional(port.startedAt->time_since_epoch().count()) : std::nullopt);
    mix(port.args);
    mix(port.service);
    mix(port.container);
    mix(port.cpu);
    mix(port.memoryKB);
    mix(port.workerPID);
    mix(port.hostApp);
    mix(port.agent);
    mix(static_cast<int>(port.serviceManager));
    return seed;
}
