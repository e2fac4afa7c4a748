#include "presentation/panel/trayMenu.h"

#include "presentation/panel/PanelFooterController.h"
#include "presentation/portTexts.h"
#include "store/PortStore.h"

#include <QCoreApplication>

namespace tarnvale {

namespace {

constexpr std::size_t mostServers = 8;
constexpr qsizetype longestTitle = 60;

QString trayText(const char *text) {
    return QCoreApplication::translate("TrayMenu", text);
}

QString shortened(const QString &title) {
    return title.size() > longestTitle ? title.left(longestTitle - 1) + QStringLiteral("…") : title;
}

/// "3000 · shop", with what can be done with it. Nothing here stops a server at one click by mistake: the
/// entry says what it does, and lies a level deeper.
MenuEntry serverEntry(PortStore &store, const ListeningPort &port) {
    MenuEntry entry{.title = QStringLiteral("%1 · %2").arg(port.port).arg(shortened(portTitle(port)))};
    if (store.isWebPort(port)) {
        entry.children.push_back(
            menuAction(trayText("Open in Browser"), [&store, port] { store.openInBrowser(port); }));
        entry.children.push_back(menuAction(trayText("Copy URL"), [&store, port] { store.copyURL(port); }));
    } else {
        entry.children.push_back(
            menuAction(trayText("Copy Address"), [&store, port] { store.copyURL(port); }));
    }
    entry.children.push_back(menuDivider());
    entry.children.push_back(menuAction(stopActionTitle(port), [&store, port] { store.stop(port); }));
    return entry;
}

} // namespace

std::vector<MenuEntry> trayMenu(PortStore &store, const PanelActions &actions,
                                const std::function<void()> &openPanel) {
    std::vector<MenuEntry> entries{menuAction(trayText("Open Panel"), openPanel), menuDivider()};
    std::size_t count = 0;
    for (const ListeningPort &port : store.visiblePorts()) {
        if (++count > mostServers)
            break;
        entries.push_back(serverEntry(store, port));
    }
    if (count == 0)
        entries.push_back({.title = trayText("No dev servers running"), .isEnabled = false});
    if (count > mostServers)
        entries.push_back(menuAction(trayText("More…"), openPanel));
    entries.push_back(menuDivider());
    if (actions.openWindow)
        entries.push_back(menuAction(trayText("Open Tarnvale Window"), actions.openWindow));
    entries.push_back(menuAction(trayText("Quit Tarnvale"), actions.quit));
    return entries;
}

} // namespace tarnvale
