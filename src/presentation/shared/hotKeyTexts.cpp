#include "presentation/shared/hotKeyTexts.h"

#include "commands/hotkey/GlobalHotKey.h"
#include "commands/hotkey/keycaps.h"

namespace tarnvale {

using Kind = HotKeyAvailability::Kind;

QStringList hotKeyCaps(const GlobalHotKey &hotKey) {
    if (!hotKey.isTaken() || !canRecord(hotKey))
        return {};
    if (const std::string trigger = hotKey.availability().trigger; !trigger.empty())
        return {QString::fromStdString(trigger)};
    QStringList caps;
    for (const std::string &cap : keycaps(hotKey.current().display))
        caps.append(QString::fromStdString(cap));
    return caps;
}

QString hotKeyCommand(const GlobalHotKey &hotKey) {
    const HotKeyAvailability availability = hotKey.availability();
    return availability.kind == Kind::needsCommand ? QString::fromStdString(availability.command) : QString();
}

bool canRecord(const GlobalHotKey &hotKey) {
    const Kind kind = hotKey.availability().kind;
    return kind == Kind::works || kind == Kind::desktopDecides;
}

} // namespace tarnvale
