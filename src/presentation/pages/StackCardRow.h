#pragma once

#include "presentation/shared/KeyedListModel.h"
#include "store/Stack.h"

#include <QString>
#include <QStringList>
#include <QVariantList>

#include <set>
#include <vector>

namespace tarnvale {

/// A stack with its commands, and which of them are up.
struct StackCardRow {
    QString id;
    QString name;
    QString progress; ///< "2 of 3 running"
    QStringList commands;
    QVariantList areUp;     ///< one Boolean for each command
    QString folder;         ///< the one that all commands share, the home folder as "~"; empty without one
    QString folderTip;      ///< the same in full
    bool isRunning = false; ///< all commands are up
    bool isArmed = false;   ///< the next press of "Delete" deletes it

    [[nodiscard]] QString key() const { return id; }
    [[nodiscard]] static const std::vector<ListRole<StackCardRow>> &roles();

    bool operator==(const StackCardRow &) const = default;
};

/// The row for `stack`, of whose commands those in `running` are up. `home` is the user's home folder.
[[nodiscard]] StackCardRow stackCardRow(const Stack &stack, const std::set<Stack::Command> &running,
                                        const std::string &home);

/// `path` with "~" for the home folder at its front.
[[nodiscard]] QString shortFolder(const std::string &path, const std::string &home);

} // namespace tarnvale
