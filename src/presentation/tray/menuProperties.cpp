#include "presentation/tray/menuProperties.h"

#include <QDBusMetaType>
#include <QStringList>

#include <algorithm>
#include <array>
#include <utility>

namespace tarnvale {

namespace {

using Shortcut = QList<QStringList>; ///< signature aas: the keys of each stroke, the modifiers first

/// A single underscore would mark the next letter as the key to press; a longer title than anyone reads is
/// cut.
QString labelOf(const QString &title) {
    constexpr qsizetype longest = 200;
    QString label = title.left(longest);
    if (title.size() > longest)
        label.append(QChar(u'…'));
    std::replace_if(
        label.begin(), label.end(), [](QChar c) { return c.category() == QChar::Other_Control; },
        QChar(u' '));
    return label.replace(u'_', QStringLiteral("__"));
}

/// "Ctrl+Shift+Q" in the protocol's words; nothing when it has none for a modifier.
Shortcut shortcutOf(const QString &text) {
    static const std::array<std::pair<QString, QString>, 4> modifiers{
        {{QStringLiteral("Ctrl"), QStringLiteral("Control")},
         {QStringLiteral("Alt"), QStringLiteral("Alt")},
         {QStringLiteral("Shift"), QStringLiteral("Shift")},
         {QStringLiteral("Super"), QStringLiteral("Super")}}};
    QStringList words = text.split(u'+');
    if (text == u"+" || text.endsWith(u"++")) // the key itself is a plus
        words = words.mid(0, words.size() - 2) << QStringLiteral("plus");
    const QString key = words.takeLast();
    if (key.isEmpty())
        return {};
    for (QString &word : words) {
        const auto found = std::find_if(modifiers.begin(), modifiers.end(),
                                        [&word](const auto &pair) { return pair.first == word; });
        if (found == modifiers.end())
            return {};
        word = found->second;
    }
    return {words << key};
}

} // namespace

QVariantMap menuProperties(const MenuEntry &entry) {
    qDBusRegisterMetaType<Shortcut>();
    if (entry.isDivider())
        return {{QStringLiteral("type"), QStringLiteral("separator")}};
    QVariantMap properties{{QStringLiteral("label"), labelOf(entry.title)}};
    if (!entry.isEnabled)
        properties.insert(QStringLiteral("enabled"), false);
    if (entry.isChecked) {
        properties.insert(QStringLiteral("toggle-type"), QStringLiteral("checkmark"));
        properties.insert(QStringLiteral("toggle-state"), *entry.isChecked ? 1 : 0);
    }
    if (!entry.children.empty())
        properties.insert(QStringLiteral("children-display"), QStringLiteral("submenu"));
    if (const Shortcut shortcut = shortcutOf(entry.shortcut); !shortcut.isEmpty())
        properties.insert(QStringLiteral("shortcut"), QVariant::fromValue(shortcut));
    return properties;
}

const QVariantMap &menuPropertyDefaults() {
    qDBusRegisterMetaType<Shortcut>();
    static const QVariantMap defaults{{QStringLiteral("type"), QStringLiteral("standard")},
                                      {QStringLiteral("label"), QString()},
                                      {QStringLiteral("enabled"), true},
                                      {QStringLiteral("visible"), true},
                                      {QStringLiteral("icon-name"), QString()},
                                      {QStringLiteral("icon-data"), QByteArray()},
                                      {QStringLiteral("shortcut"), QVariant::fromValue(Shortcut())},
                                      {QStringLiteral("toggle-type"), QString()},
                                      {QStringLiteral("toggle-state"), -1},
                                      {QStringLiteral("children-display"), QString()},
                                      {QStringLiteral("disposition"), QStringLiteral("normal")}};
    return defaults;
}

} // namespace tarnvale
