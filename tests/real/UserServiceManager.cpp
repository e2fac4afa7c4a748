#include "real/UserServiceManager.h"

#include "discovery/findTool.h"
#include "discovery/text.h"
#include "support/TestProcess.h"

#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

namespace tarnvale {

namespace {

/// systemd runs only where this folder says that it started the machine.
constexpr const char *bootMark = "/run/systemd/system";

} // namespace

UserServiceManager::UserServiceManager() {
    const auto systemd = firstExecutable({"/usr/lib/systemd/systemd", "/lib/systemd/systemd"});
    m_systemctl = findProgram("systemctl").value_or("");
    m_systemdRun = findProgram("systemd-run").value_or("");
    const std::string busDaemon = findProgram("dbus-daemon").value_or("");
    if (getuid() != 0)
        m_problem = "only root can give a service manager control groups of its own";
    else if (!systemd || m_systemctl.empty() || m_systemdRun.empty())
        m_problem = "systemd is not installed";
    else if (busDaemon.empty())
        m_problem = "dbus-daemon is not installed";
    else if (m_groups.emplace("tarnvale-test-" + std::to_string(getpid())).folders().empty())
        m_problem = "this machine has no unified control groups that may be written to";
    if (!m_problem.empty())
        return;

    // Both exist on a machine that systemd started.
    m_madeMark = std::filesystem::create_directories(bootMark);
    const std::string runtime = m_folder.path("run");
    mkdir(runtime.c_str(), 0700);
    // The user's own units stay out: only the standard ones, and targets that start nothing.
    m_folder.write("units/basic.target", "[Unit]\nDescription=Nothing\n");
    m_folder.write("units/default.target", "[Unit]\nRequires=basic.target\nAfter=basic.target\n");
    std::filesystem::create_directories(applicationFolder());
    m_variables.emplace_back("XDG_RUNTIME_DIR", runtime);
    m_variables.emplace_back("XDG_DATA_HOME", m_folder.path("data"));
    m_variables.emplace_back("XDG_CONFIG_HOME", m_folder.path("config"));
    m_variables.emplace_back("DBUS_SESSION_BUS_ADDRESS", "unix:path=" + runtime + "/bus");
    m_variables.emplace_back("SYSTEMD_UNIT_PATH", m_folder.path("units") + ":" + runtime +
                                                      "/systemd/transient:/usr/lib/systemd/user");
    m_bus.emplace(std::vector<std::string>{busDaemon, "--session", "--nofork", "--nopidfile",
                                           "--address=unix:path=" + runtime + "/bus"});
    m_manager.emplace(
        std::vector<std::string>{*systemd, "--user"},
        ProcessSetup{.environment = {"SYSTEMD_LOG_TARGET=console"}, .controlGroups = m_groups->folders()});
    const auto answers = [&] { return systemctl({"show", "--property=Version"}).status == 0; };
    if (!eventually([&] { return !isAlive(m_manager->pid()) || answers(); }) || !isAlive(m_manager->pid()))
        m_problem = "no user manager can be started here: " + m_manager->output() + m_bus->output();
}

UserServiceManager::~UserServiceManager() {
    m_manager.reset();
    m_bus.reset();
    if (m_madeMark)
        rmdir(bootMark);
}

bool UserServiceManager::run(const std::string &unit, const std::vector<std::string> &words,
                             const std::string &folder, const std::vector<std::string> &options) {
    std::vector<std::string> all{m_systemdRun, "--user",         "--quiet",
                                 "--collect",  "--unit=" + unit, "--working-directory=" + folder};
    all.insert(all.end(), options.begin(), options.end());
    all.emplace_back("--");
    all.insert(all.end(), words.begin(), words.end());
    return runProgram(all).status == 0;
}

ProgramRun UserServiceManager::systemctl(const std::vector<std::string> &words) const {
    std::vector<std::string> all{m_systemctl, "--user"};
    all.insert(all.end(), words.begin(), words.end());
    return runProgram(all);
}

Pid UserServiceManager::mainPid(const std::string &unit) const {
    const std::string answer = systemctl({"show", "--property=MainPID", "--value", unit}).output;
    return parseInteger<Pid>(nonEmptyLines(answer).empty() ? "" : nonEmptyLines(answer).front()).value_or(0);
}

std::vector<std::string> UserServiceManager::scoped(const std::string &unit,
                                                    const std::vector<std::string> &words) const {
    std::vector<std::string> all{m_systemdRun, "--user",         "--quiet", "--collect",
                                 "--scope",    "--unit=" + unit, "--"};
    all.insert(all.end(), words.begin(), words.end());
    return all;
}

} // namespace tarnvale
