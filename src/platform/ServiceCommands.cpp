#include "platform/ServiceCommands.h"

namespace tarnvale {

using namespace std::chrono_literals;

namespace {

/// `systemctl` takes a name with one of "*?[" for a pattern, and "*" would stop everything. No unit has such
/// a name; written as systemd escapes them, they match nothing.
std::string withoutPatterns(const std::string &unit) {
    std::string plain;
    for (const char c : unit)
        switch (c) {
        case '*':
            plain += "\\x2a";
            break;
        case '?':
            plain += "\\x3f";
            break;
        case '[':
            plain += "\\x5b";
            break;
        default:
            plain += c;
        }
    return plain;
}

ToolRun launchctlRun(std::vector<std::string> words, const std::string &label, uid_t uid) {
    words.push_back("gui/" + std::to_string(uid) + "/" + label);
    return {.path = "/bin/launchctl", .arguments = std::move(words), .timeout = 10s};
}

/// Behind "--" nothing is an option, whatever it looks like.
ToolRun systemctlRun(const std::string &verb, const std::string &label, ServiceManager manager,
                     const std::string &systemctl) {
    ToolRun run{.path = systemctl, .arguments = {verb, "--", withoutPatterns(label)}, .timeout = 60s};
    if (manager == ServiceManager::systemdUser) {
        run.arguments.insert(run.arguments.begin(), "--user");
        run.timeout = 10s;
    }
    return run;
}

} // namespace

ToolRun stopServiceRun(const std::string &label, ServiceManager manager, uid_t uid,
                       const std::string &systemctl) {
    return manager == ServiceManager::launchd ? launchctlRun({"bootout"}, label, uid)
                                              : systemctlRun("stop", label, manager, systemctl);
}

ToolRun restartServiceRun(const std::string &label, ServiceManager manager, uid_t uid,
                          const std::string &systemctl) {
    return manager == ServiceManager::launchd ? launchctlRun({"kickstart", "-k"}, label, uid)
                                              : systemctlRun("restart", label, manager, systemctl);
}

} // namespace tarnvale
