#pragma once

#include "discovery/Machine.h"

#include <string>

namespace tarnvale {

/// The machine as its stock tools tell it: lsof, ps, launchctl and docker, run one after the other.
///
/// On the Mac this is the machine. Elsewhere it serves as a yardstick, where the tools exist.
class StockToolsMachine : public Machine {
public:
    /// Where the tools lie, and this program's own bundle. A tool that isn't there answers nothing.
    struct Paths {
        std::string lsof;
        std::string ps = "/bin/ps";
        std::string launchctl = "/bin/launchctl";
        std::string ownBundle;
    };

    explicit StockToolsMachine(Paths paths);
    StockToolsMachine();

    std::vector<ListeningPort> listeningSockets() override;
    ProcessDetailsMap processDetails(const std::vector<Pid> &pids) override;
    ProcessDetailsMap currentDetails(const std::vector<Pid> &pids) override;
    WorkingDirectories workingDirectories(const std::vector<Pid> &pids) override;
    ServiceLabels serviceLabels(const std::vector<Pid> &pids) override;
    ContainerMap containers(const std::vector<ListeningPort> &proxies) override;
    ProcessTable processTable(const std::vector<Pid> &pids) override;
    std::optional<std::string> hostApplication(Pid pid, const ProcessNode &node) override;
    std::string ownApplication() override;

private:
    Paths m_paths;
};

/// The outermost ".app" bundle in `path`; nothing when there is none.
[[nodiscard]] std::optional<std::string> appBundle(std::string_view path);

} // namespace tarnvale
