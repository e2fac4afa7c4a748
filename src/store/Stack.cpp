#include "store/Stack.h"

#include <algorithm>

namespace tarnvale {

std::set<Stack::Command> runningCommands(const std::vector<ListeningPort> &ports) {
    std::set<Stack::Command> running;
    for (const ListeningPort &port : ports)
        if (port.args)
            running.insert({*port.args, port.cwd.value_or(std::string())});
    return running;
}

std::vector<Stack::Command> commandsBeside(const ListeningPort &port,
                                           const std::vector<ListeningPort> &ports) {
    std::vector<Stack::Command> commands;
    if (!port.cwd || !port.hasProject() || port.service)
        return commands;
    for (const ListeningPort &other : ports) {
        if (other.cwd != port.cwd || !other.args)
            continue;
        Stack::Command command{*other.args, *other.cwd};
        if (std::find(commands.begin(), commands.end(), command) == commands.end())
            commands.push_back(std::move(command));
    }
    return commands;
}

void putStack(std::vector<Stack> &stacks, const std::string &name, std::vector<Stack::Command> commands) {
    const auto found =
        std::find_if(stacks.begin(), stacks.end(), [&](const Stack &stack) { return stack.name == name; });
    if (found != stacks.end())
        found->commands = std::move(commands);
    else
        stacks.push_back({.id = QUuid::createUuid(), .name = name, .commands = std::move(commands)});
}

} // namespace tarnvale
