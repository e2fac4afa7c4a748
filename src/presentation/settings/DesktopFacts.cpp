#include "presentation/settings/DesktopFacts.h"

#include <QCoreApplication>

namespace tarnvale {

namespace {

QString text(const char *source) {
    return QCoreApplication::translate("DesktopIntegration", source);
}

/// What to say of one of the four.
struct Finding {
    QString found;
    QString advice = {};
    bool isKnown = true;
};

Finding trayFinding(TrayKind tray) {
    switch (tray) {
    case TrayKind::statusNotifier:
        return {text("Shows status icons")};
    case TrayKind::xembed:
        return {text("Shows icons of the older kind")};
    case TrayKind::none:
        break;
    }
    return {text("None found"), text("Add a system tray to the desktop's bar, on GNOME with the AppIndicator "
                                     "extension; until then the "
                                     "panel opens at the top right of the screen.")};
}

Finding hotKeyFinding(const DesktopFacts &facts) {
    using Kind = HotKeyAvailability::Kind;
    const QString trigger = QString::fromStdString(facts.hotKey.trigger);
    const QString label = trigger.isEmpty() ? QString::fromStdString(facts.hotKeyLabel) : trigger;
    switch (facts.hotKey.kind) {
    case Kind::desktopDecides:
        if (facts.hasHotKey && !trigger.isEmpty())
            return {text("The desktop has bound %1").arg(label)};
        if (facts.hasHotKey)
            return {text("The desktop binds the keys")};
        return {text("The desktop has bound no keys"),
                text("Choose a shortcut in the Shortcut tab, and allow it when the desktop asks.")};
    case Kind::works:
        if (facts.hasHotKey)
            return {text("%1 works from any app").arg(label)};
        return {text("%1 is held by another app").arg(label),
                text("Choose another shortcut in the Shortcut tab.")};
    case Kind::needsCommand:
        return {text("No app may take a key here"),
                text("Bind a key to “%1” in the desktop's keyboard settings.")
                    .arg(QString::fromStdString(facts.hotKey.command))};
    case Kind::none:
        break;
    }
    return {text("No way to take a key was found"),
            text("Start an X11 session, or a desktop that offers global shortcuts.")};
}

Finding notificationsFinding(const DesktopFacts &facts) {
    switch (facts.notifications) {
    case DesktopFacts::Notifications::asked:
        return {.found = text("Looking…"), .isKnown = false};
    case DesktopFacts::Notifications::found:
        return {facts.notificationServer.isEmpty() ? text("Shown by the desktop")
                                                   : text("Shown by %1").arg(facts.notificationServer)};
    case DesktopFacts::Notifications::missing:
        break;
    }
    return {text("No notification server"),
            text("Install a notification server, such as dunst, and have it start with your session.")};
}

Finding compositorFinding(bool isComposited) {
    if (isComposited)
        return {text("Running")};
    return {text("None running"),
            text("Start a compositor, such as picom; without one the panel has square corners.")};
}

DesktopRow row(const char *id, const char *symbol, const QString &name, const Finding &finding) {
    return {.id = QLatin1String(id),
            .symbol = QLatin1String(symbol),
            .name = name,
            .found = finding.found,
            .advice = finding.advice,
            .isMissing = !finding.advice.isEmpty(),
            .isKnown = finding.isKnown};
}

} // namespace

std::vector<DesktopRow> desktopRows(const DesktopFacts &facts) {
    return {
        row("tray", "macwindow", text("Tray"), trayFinding(facts.tray)),
        row("hotKey", "keyboard", text("Hot key"), hotKeyFinding(facts)),
        row("notifications", "bell", text("Notifications"), notificationsFinding(facts)),
        row("compositor", "square.stack.3d.up", text("Compositor"), compositorFinding(facts.isComposited))};
}

const std::vector<ListRole<DesktopRow>> &DesktopRow::roles() {
    static const std::vector<ListRole<DesktopRow>> all{
        {"symbol", [](const DesktopRow &row) -> QVariant { return row.symbol; }},
        {"name", [](const DesktopRow &row) -> QVariant { return row.name; }},
        {"found", [](const DesktopRow &row) -> QVariant { return row.found; }},
        {"advice", [](const DesktopRow &row) -> QVariant { return row.advice; }},
        {"isMissing", [](const DesktopRow &row) -> QVariant { return row.isMissing; }},
        {"isKnown", [](const DesktopRow &row) -> QVariant { return row.isKnown; }},
    };
    return all;
}

} // namespace tarnvale
