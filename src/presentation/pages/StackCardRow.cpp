#include "presentation/pages/StackCardRow.h"

#include "discovery/text.h"
#include "presentation/plainText.h"

#include <QCoreApplication>

#include <algorithm>

namespace tarnvale {

namespace {

constexpr std::size_t longestCommand = 400; // characters

bool sharesFolder(const Stack &stack) {
    return !stack.commands.empty() &&
           std::all_of(stack.commands.begin(), stack.commands.end(), [&](const Stack::Command &command) {
               return command.cwd == stack.commands.front().cwd;
           });
}

} // namespace

QString shortFolder(const std::string &path, const std::string &home) {
    const bool isAtHome = !home.empty() && home != "/" && path.starts_with(home) &&
                          (path.size() == home.size() || path[home.size()] == '/');
    return plainText(isAtHome ? "~" + path.substr(home.size()) : path);
}

StackCardRow stackCardRow(const Stack &stack, const std::set<Stack::Command> &running,
                          const std::string &home) {
    StackCardRow row{.id = stack.id.toString(QUuid::WithoutBraces), .name = plainText(stack.name)};
    std::size_t up = 0;
    for (const Stack::Command &command : stack.commands) {
        const bool isUp = running.contains(command);
        up += isUp ? 1 : 0;
        row.commands.append(plainText(firstCharacters(repairedUtf8(command.args), longestCommand)));
        row.areUp.append(isUp);
    }
    row.progress =
        QCoreApplication::translate("StacksView", "%1 of %2 running").arg(up).arg(stack.commands.size());
    row.isRunning = up == stack.commands.size();
    if (sharesFolder(stack)) {
        row.folder = shortFolder(stack.commands.front().cwd, home);
        row.folderTip = plainText(stack.commands.front().cwd);
    }
    return row;
}

const std::vector<ListRole<StackCardRow>> &StackCardRow::roles() {
    static const std::vector<ListRole<StackCardRow>> all{
        {"stackId", [](const StackCardRow &row) -> QVariant { return row.id; }},
        {"name", [](const StackCardRow &row) -> QVariant { return row.name; }},
        {"progress", [](const StackCardRow &row) -> QVariant { return row.progress; }},
        {"commands", [](const StackCardRow &row) -> QVariant { return row.commands; }},
        {"areUp", [](const StackCardRow &row) -> QVariant { return row.areUp; }},
        {"folder", [](const StackCardRow &row) -> QVariant { return row.folder; }},
        {"folderTip", [](const StackCardRow &row) -> QVariant { return row.folderTip; }},
        {"isRunning", [](const StackCardRow &row) -> QVariant { return row.isRunning; }},
        {"isArmed", [](const StackCardRow &row) -> QVariant { return row.isArmed; }},
    };
    return all;
}

} // namespace tarnvale
