#pragma once

#include <QString>

#include <functional>

namespace tarnvale {

/// One action of the command palette. All texts are plain.
struct PaletteItem {
    QString id; ///< the same action has the same one in every list
    QString title;
    QString subtitle;
    QString symbol;
    QString tint; ///< a standard colour's name, or "secondary"
    bool isDestructive = false;
    std::function<void()> run;
    QString searched; ///< title and subtitle as `filteredItems` compares them
};

/// `text` as the words of a query are compared with it: in lower case, a letter and its accent in one.
[[nodiscard]] inline QString forPaletteSearch(const QString &text) {
    return text.toLower().normalized(QString::NormalizationForm_C);
}

} // namespace tarnvale
