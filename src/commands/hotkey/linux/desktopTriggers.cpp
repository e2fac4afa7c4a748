#include "commands/hotkey/linux/desktopTriggers.h"

#include "commands/hotkey/keycaps.h"
#include "commands/hotkey/namedKeys.h"

#include <QList>
#include <QString>

#include <array>

namespace tarnvale {

namespace {

struct Modifier {
    std::uint32_t bit;
    const char *name;
    int qt;
};

constexpr std::array modifierNames{
    Modifier{CarbonModifier::control, "CTRL", Qt::ControlModifier},
    Modifier{CarbonModifier::option, "ALT", Qt::AltModifier},
    Modifier{CarbonModifier::shift, "SHIFT", Qt::ShiftModifier},
    Modifier{CarbonModifier::command, "LOGO", Qt::MetaModifier},
};

/// The one character that the key writes; 0 when its label is a word.
char32_t characterOf(const Shortcut &shortcut) {
    const std::string_view label = keyLabel(shortcut.display);
    const auto points = QString::fromUtf8(label.data(), static_cast<qsizetype>(label.size())).toUcs4();
    return points.size() == 1 && QChar::isPrint(points.front()) ? points.front() : 0;
}

/// The name of the keysym that writes `character` (xkb_keysym_from_name).
std::string keysymName(char32_t character) {
    const char32_t lower = QChar::toLower(character);
    const bool isOwnName = (lower >= U'a' && lower <= U'z') || (lower >= U'0' && lower <= U'9');
    if (isOwnName)
        return {static_cast<char>(lower)};
    constexpr int leastDigits = 4;
    constexpr int hexadecimal = 16;
    return QStringLiteral("U%1").arg(uint(lower), leastDigits, hexadecimal, QLatin1Char('0')).toStdString();
}

} // namespace

std::string portalTrigger(const Shortcut &shortcut) {
    const NamedKey *const named = namedKey(shortcut.keyCode);
    const char32_t character = characterOf(shortcut);
    if (named == nullptr && character == 0)
        return {};
    std::string trigger;
    for (const Modifier &modifier : modifierNames)
        if ((shortcut.carbonModifiers & modifier.bit) != 0)
            trigger += std::string(modifier.name) + "+";
    return trigger + (named != nullptr ? named->keysym : keysymName(character));
}

std::optional<int> qtKeyCombination(const Shortcut &shortcut) {
    const NamedKey *const named = namedKey(shortcut.keyCode);
    const char32_t character = QChar::toUpper(characterOf(shortcut));
    if (named == nullptr && character == 0)
        return std::nullopt;
    int combination = named != nullptr ? named->qtKey : static_cast<int>(character);
    for (const Modifier &modifier : modifierNames)
        if ((shortcut.carbonModifiers & modifier.bit) != 0)
            combination |= modifier.qt;
    return combination;
}

} // namespace tarnvale
