#include "presentation/shared/portMenu.h"

#include "platform/Desktop.h"
#include "presentation/plainText.h"
#include "store/PortStore.h"

#include <QCoreApplication>

#include <filesystem>

namespace tarnvale {

namespace {

QString menuText(const char *text) {
    return QCoreApplication::translate("PortMenuItems", text);
}

/// The entries of one menu in the making, with what they act on.
struct PortMenu {
    PortStore &store;
    Desktop &desktop;
    const ListeningPort &port;
    const PortFiles &files;
    std::vector<MenuEntry> entries = {};

    void add(const QString &title, void (PortStore::*act)(const ListeningPort &)) {
        entries.push_back(menuAction(title, [&to = store, on = port, act] { (to.*act)(on); }));
    }

    void addDisabled(const QString &title) { entries.push_back({.title = title, .isEnabled = false}); }

    void addDivider() { entries.push_back(menuDivider()); }

    void addCopy(const QString &title, const std::string &text) {
        entries.push_back(menuAction(title, [&to = store, text] { to.copyText(text); }));
    }

    void addRestart(const QString &title) {
        entries.push_back(menuAction(title, [&to = store, on = port] { to.restart(on); }));
    }

    void addLog(const QString &title, const std::string &path) {
        entries.push_back(menuAction(title, [&to = store, path] { to.openInConsole(path); }));
    }

    void addAddresses(bool isWeb);
    void addFocus();
    void addProcess();
    void addSharing();
    void addSites();
    void addFolder();
};

void PortMenu::addAddresses(bool isWeb) {
    const std::string address = "localhost:" + std::to_string(port.port);
    if (isWeb) {
        add(menuText("Open in Browser"), &PortStore::openInBrowser);
        addCopy(menuText("Copy URL"), "http://" + address);
    } else {
        addCopy(menuText("Copy Address"), address);
    }
    add(menuText("Copy Port"), &PortStore::copyPort);
    add(menuText("Copy PID"), &PortStore::copyPID);
}

void PortMenu::addFocus() {
    if (port.hostApp)
        add(menuText("Focus %1").arg(plainText(desktop.applicationName(*port.hostApp))),
            &PortStore::focusHostApp);
}

void PortMenu::addProcess() {
    const bool isRestartable = port.hasProject() && port.args;
    if (port.containerName())
        addRestart(menuText("Restart Container"));
    else if (port.service)
        addRestart(menuText("Restart Service"));
    else if (isRestartable)
        addRestart(menuText("Restart"));
    if (files.launchLog)
        addLog(menuText("Show Logs"), *files.launchLog);
    else if (!port.service && !port.container && isRestartable)
        addRestart(menuText("Restart to Capture Logs"));
    if (files.projectLog)
        addLog(menuText("Open %1").arg(plainText(files.projectLog->name)), files.projectLog->path);
    const bool isWatched = store.watchedPorts().contains(port.port);
    add(isWatched ? menuText("Stop Watching Port") : menuText("Notify When Port Stops"),
        &PortStore::toggleWatch);
}

void PortMenu::addSharing() {
    const auto tunnel = store.tunnels().find(port.port);
    if (tunnel == store.tunnels().end()) {
        if (files.tunnelTool)
            add(menuText("Share Publicly via %1").arg(plainText(tunnelToolName(*files.tunnelTool))),
                &PortStore::share);
        else
            addDisabled(menuText("Share Publicly (install cloudflared)"));
        return;
    }
    const std::int64_t number = port.port;
    if (tunnel->second.url)
        entries.push_back(
            menuAction(menuText("Copy Public URL"), [&to = store, number] { to.copyPublicURL(number); }));
    else
        addDisabled(menuText("Starting %1…").arg(plainText(tunnelToolName(tunnel->second.tool))));
    entries.push_back(
        menuAction(menuText("Stop Sharing"), [&to = store, number] { to.stopSharing(number); }));
}

void PortMenu::addSites() {
    if (files.sites.empty())
        return;
    MenuEntry sites{.title = menuText("Sites (%1)").arg(files.sites.size())};
    for (const LocalSites::Site &site : files.sites)
        sites.children.push_back(
            menuAction(plainText(site.domain), [&to = desktop, url = site.url] { to.openUrl(url); }));
    entries.push_back(std::move(sites));
}

void PortMenu::addFolder() {
    add(menuText("Reveal Folder"), &PortStore::reveal);
    entries.back().isEnabled = port.cwd.has_value();
    const auto project = port.projectName();
    if (port.hasProject() && project && port.args && port.cwd && !port.service)
        entries.push_back(menuAction(menuText("Save %1 as Stack").arg(plainText(*project)),
                                     [&to = store, on = port] { to.saveStack(on); }));
}

} // namespace

PortFiles readPortFiles(const ListeningPort &port, const std::optional<std::string> &launchLog,
                        const Tools &tools) {
    PortFiles files;
    std::error_code error;
    if (launchLog && std::filesystem::exists(*launchLog, error))
        files.launchLog = launchLog;
    if (port.cwd)
        files.projectLog = findProjectLog(*port.cwd);
    files.sites = LocalSites::sites(port);
    if (const auto tool = findTunnelTool(tools))
        files.tunnelTool = tool->tool;
    return files;
}

std::vector<MenuEntry> portMenu(PortStore &store, Desktop &desktop, const ListeningPort &port, bool isWeb,
                                const PortFiles &files) {
    PortMenu menu{store, desktop, port, files};
    menu.addAddresses(isWeb);
    menu.addFocus();
    menu.addDivider();
    menu.addProcess();
    if (isWeb || store.tunnels().contains(port.port)) {
        menu.addDivider();
        menu.addSharing();
    }
    menu.addSites();
    menu.addDivider();
    menu.addFolder();
    return std::move(menu.entries);
}

} // namespace tarnvale
