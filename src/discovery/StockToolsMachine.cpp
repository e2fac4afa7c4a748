#include "discovery/StockToolsMachine.h"

#include "discovery/docker.h"
#include "discovery/executablePath.h"
#include "discovery/findTool.h"
#include "discovery/parseLaunchdList.h"
#include "discovery/parseLsof.h"
#include "discovery/runTool.h"
#include "discovery/text.h"

namespace tarnvale {

namespace {

using namespace std::chrono_literals;

constexpr auto toolTimeout = 5s;

std::string joined(const std::vector<Pid> &pids) {
    std::string text;
    for (const Pid pid : pids) {
        if (!text.empty())
            text += ',';
        text += std::to_string(pid);
    }
    return text;
}

/// Where lsof may not look, it writes a remark in place of the folder on Linux:
/// "/proc/1/cwd (readlink: Permission denied)".
bool isRemark(std::string_view folder) {
    return folder.starts_with("/proc/") && folder.find(" (readlink: ") != folder.npos;
}

} // namespace

std::optional<std::string> appBundle(std::string_view path) {
    constexpr std::string_view suffix = ".app";
    const std::size_t found = path.find(".app/");
    if (found == path.npos)
        return std::nullopt;
    return std::string(path.substr(0, found + suffix.size()));
}

StockToolsMachine::StockToolsMachine(Paths paths) : m_paths(std::move(paths)) {}

StockToolsMachine::StockToolsMachine()
    : m_paths{.lsof = firstExecutable({"/usr/sbin/lsof", "/usr/bin/lsof"}).value_or("/usr/sbin/lsof"),
              .ownBundle = appBundle(executablePath()).value_or(std::string(parentPath(executablePath())))} {}

std::vector<ListeningPort> StockToolsMachine::listeningSockets() {
    return parseListeningSockets(
        runTool(m_paths.lsof, {"-nP", "+c", "0", "-iTCP", "-sTCP:LISTEN", "-Fpcn"}, false, toolTimeout));
}

ProcessDetailsMap StockToolsMachine::processDetails(const std::vector<Pid> &pids) {
    return parseProcessDetails(
        runTool(m_paths.ps, {"-ww", "-o", "pid=,ppid=,etime=,%cpu=,rss=,args=", "-p", joined(pids)}, false,
                toolTimeout));
}

ProcessDetailsMap StockToolsMachine::currentDetails(const std::vector<Pid> &pids) {
    return processDetails(pids);
}

WorkingDirectories StockToolsMachine::workingDirectories(const std::vector<Pid> &pids) {
    WorkingDirectories directories = parseWorkingDirectories(
        runTool(m_paths.lsof, {"-a", "-d", "cwd", "-p", joined(pids), "-Fpn"}, false, toolTimeout));
    std::erase_if(directories, [](const auto &entry) { return isRemark(entry.second); });
    return directories;
}

ServiceLabels StockToolsMachine::serviceLabels(const std::vector<Pid> &) {
    return parseLaunchdList(runTool(m_paths.launchctl, {"list"}, false, toolTimeout));
}

ContainerMap StockToolsMachine::containers(const std::vector<ListeningPort> &) {
    return queryDockerPorts();
}

ProcessTable StockToolsMachine::processTable(const std::vector<Pid> &) {
    return parseProcessTable(runTool(m_paths.ps, {"-axww", "-o", "pid=,ppid=,comm="}, false, toolTimeout));
}

std::optional<std::string> StockToolsMachine::hostApplication(Pid, const ProcessNode &node) {
    return appBundle(node.path);
}

std::string StockToolsMachine::ownApplication() {
    return m_paths.ownBundle;
}

} // namespace tarnvale
