#include "commands/hotkey/KeyPress.h"

#include "commands/hotkey/keyPositions.h"
#include "commands/hotkey/namedKeys.h"
#include "discovery/text.h"

#include <QList>
#include <QString>

#include <algorithm>
#include <array>

namespace tarnvale {

namespace {

constexpr std::uint32_t escapeKeyCode = 53;
constexpr std::uint32_t escapeKeysym = 0xff1b;

/// Keys that write an accent onto the next letter (keysymdef.h, `dead_...`).
constexpr std::array deadKeys{
    std::pair<std::uint32_t, char32_t>{0xfe50, U'`'}, std::pair<std::uint32_t, char32_t>{0xfe51, U'´'},
    std::pair<std::uint32_t, char32_t>{0xfe52, U'^'}, std::pair<std::uint32_t, char32_t>{0xfe53, U'~'},
    std::pair<std::uint32_t, char32_t>{0xfe57, U'¨'},
};

/// The character of a keysym where its number says it: Latin 1 and Unicode (X Window System Protocol,
/// appendix A). 0 for all others.
char32_t characterOf(std::uint32_t keysym) {
    constexpr std::uint32_t unicode = 0x0100'0000;
    constexpr std::uint32_t lastCharacter = 0x10ffff;
    const auto *const dead = std::find_if(deadKeys.begin(), deadKeys.end(),
                                          [keysym](const auto &key) { return key.first == keysym; });
    if (dead != deadKeys.end())
        return dead->second;
    if (keysym >= unicode && keysym <= unicode + lastCharacter)
        return QChar::isSurrogate(keysym - unicode) ? 0 : keysym - unicode;
    return keysym <= 0xff ? keysym : 0;
}

/// Whatever can be seen counts, other characters don't.
QString visible(const QString &text) {
    const auto ucs4 = text.toUcs4();
    const bool isVisible = std::all_of(ucs4.begin(), ucs4.end(), [](char32_t point) {
        return QChar::isPrint(point) && !QChar::isSpace(point);
    });
    return isVisible ? text : QString();
}

std::string labelOf(const KeyPress &press, std::uint32_t keyCode) {
    if (const NamedKey *key = namedKey(keyCode))
        return key->label;
    const QString written = visible(QString::fromStdString(press.text));
    const char32_t character = characterOf(press.keysym);
    const QString text = written.isEmpty() ? visible(QString::fromUcs4(&character, 1)) : written;
    return text.toUpper().toStdString();
}

} // namespace

std::optional<Shortcut> shortcutFor(const KeyPress &press) {
    if (!press.control && !press.option && !press.command)
        return std::nullopt;
    const auto keyCode = macKeyCodeAt(press.keycode);
    if (!keyCode)
        return std::nullopt;
    const std::string label = labelOf(press, *keyCode);
    if (label.empty())
        return std::nullopt;
    Shortcut shortcut{*keyCode, 0, {}};
    const auto add = [&](bool isHeld, std::uint32_t bit, const char *symbol) {
        if (!isHeld)
            return;
        shortcut.carbonModifiers |= bit;
        shortcut.display += symbol;
    };
    add(press.control, CarbonModifier::control, "⌃");
    add(press.option, CarbonModifier::option, "⌥");
    add(press.shift, CarbonModifier::shift, "⇧");
    add(press.command, CarbonModifier::command, "⌘");
    shortcut.display += label;
    return shortcut;
}

bool isEscape(const KeyPress &press) {
    return press.keysym != 0 ? press.keysym == escapeKeysym : macKeyCodeAt(press.keycode) == escapeKeyCode;
}

} // namespace tarnvale
