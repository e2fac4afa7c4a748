#pragma once

#include "real/RealProcess.h"
#include "support/TemporaryFolder.h"
#include "support/runProgram.h"

#include <list>
#include <optional>
#include <string>
#include <vector>

namespace tarnvale {

/// A Docker engine of the test program's own, in network and mount namespaces that the program enters for the
/// rest of its life: the machine's links, packet filter and engines never notice it. It has the one image
/// `web:1.0`, which holds BusyBox and a page. Programs that the test starts find it as they would find the
/// user's engine.
class DockerEngine {
public:
    DockerEngine();
    DockerEngine(const DockerEngine &) = delete;
    DockerEngine &operator=(const DockerEngine &) = delete;
    ~DockerEngine();

    /// Why this machine can't have one; empty when it runs.
    [[nodiscard]] const std::string &problem() const { return m_problem; }

    /// Starts a web server in a container called `name`, its port published as `published`
    /// ("127.0.0.1:8080:80"); whether it could be.
    [[nodiscard]] bool serve(const std::string &name, const std::string &published) const;

    /// Removes a container at once.
    void remove(const std::string &name) const;

    /// Stops the engine's own process, as if it hung, or lets it go on.
    void setHanging(bool isHanging) const { m_engine->signal(isHanging ? SIGSTOP : SIGCONT); }

    /// Where it listens.
    [[nodiscard]] std::string socketPath() const { return m_folder.path("engine.sock"); }

    /// What the containers answer.
    static constexpr std::string_view page = "from the container\n";

private:
    ProgramRun docker(const std::vector<std::string> &words) const;
    void importImage();

    std::string m_problem;
    TemporaryFolder m_folder;
    std::string m_docker;
    std::string m_group; ///< the control group above those of its containers
    std::list<ScopedVariable> m_variables;
    std::optional<RealProcess> m_engine;
};

} // namespace tarnvale
