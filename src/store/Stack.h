#pragma once

#include "discovery/ListeningPort.h"

#include <QUuid>

#include <set>
#include <string>
#include <utility>
#include <vector>

namespace tarnvale {

/// What it takes to bring up a project: commands that start together.
struct Stack {
    struct Command {
        std::string args; ///< shell text
        std::string cwd;  ///< working folder

        auto operator<=>(const Command &) const = default;
    };

    QUuid id;
    std::string name; ///< unique among the stacks
    std::vector<Command> commands;

    bool operator==(const Stack &) const = default;
};

/// The commands that run now, by their text and folder; a process whose folder can't be read has an empty
/// one.
[[nodiscard]] std::set<Stack::Command> runningCommands(const std::vector<ListeningPort> &ports);

/// The commands that run in the folder of `port`, each once; empty when it is no project, or a service.
[[nodiscard]] std::vector<Stack::Command> commandsBeside(const ListeningPort &port,
                                                         const std::vector<ListeningPort> &ports);

/// Gives the stack called `name` these commands, or adds it behind the others.
void putStack(std::vector<Stack> &stacks, const std::string &name, std::vector<Stack::Command> commands);

} // namespace tarnvale
