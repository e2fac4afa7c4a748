#include "presentation/window/MainViewController.h"

#include "commands/hotkey/GlobalHotKey.h"
#include "platform/Clock.h"
#include "platform/Settings.h"
#include "platform/background.h"
#include "presentation/shared/after.h"
#include "presentation/shared/hotKeyTexts.h"
#include "presentation/window/windowRows.h"
#include "store/PortStore.h"

#include <QPointer>

#include <algorithm>

namespace tarnvale {

using namespace std::chrono_literals;

namespace {

constexpr auto shortestTurn = 450ms;
constexpr auto errorShownFor = 8s;
constexpr const char *hasSeenWelcome = "hasSeenWelcome";

} // namespace

MainViewController::MainViewController(PortStore &store, const Platform &platform, GlobalHotKey &hotKey,
                                       PagePictures &pictures, WindowActions actions)
    : m_store(store),
      m_platform(platform),
      m_hotKey(hotKey),
      m_pictures(pictures),
      m_actions(std::move(actions)),
      m_ports(store, platform, pictures),
      m_isWelcomeShown(!platform.settings.flag(hasSeenWelcome).value_or(false)),
      m_updates(platform.clock, [this] { update(); }) {
    m_updates.follow(store,
                     {&PortStore::portsChanged, &PortStore::healthChanged, &PortStore::watchedPortsChanged,
                      &PortStore::tunnelsChanged, &PortStore::showAllChanged, &PortStore::stacksChanged});
    connect(&store, &PortStore::isWindowVisibleChanged, this, &MainViewController::handleVisibility);
    connect(&store, &PortStore::errorChanged, this, &MainViewController::errorChanged);
    connect(&store, &PortStore::errorChanged, this, &MainViewController::fadeError);
    connect(&hotKey, &GlobalHotKey::currentChanged, this, &MainViewController::hotKeyChanged);
    connect(&hotKey, &GlobalHotKey::availabilityChanged, this, &MainViewController::hotKeyChanged);
    prepare();
}

bool MainViewController::listsPorts() const {
    return tarnvale::listsPorts(m_selection);
}

int MainViewController::sidebarIndex() const {
    const auto found = std::ranges::find(m_sidebar.rows(), m_selection, &SidebarRow::item);
    return found == m_sidebar.rows().end() ? -1 : static_cast<int>(found - m_sidebar.rows().begin());
}

QString MainViewController::subtitle() const {
    return tr("%1 listening").arg(m_rowCount);
}

QString MainViewController::error() const {
    return m_store.error().value_or(QString());
}

QStringList MainViewController::hotKeyCaps() const {
    return tarnvale::hotKeyCaps(m_hotKey);
}

std::vector<RowEntry> MainViewController::allRows() const {
    std::vector<RowEntry> rows;
    for (RowSection &group : groupedRows(m_store.visiblePorts(), webTestOf(m_store)))
        std::move(group.rows.begin(), group.rows.end(), std::back_inserter(rows));
    return rows;
}

// What follows from the store.

void MainViewController::update() {
    m_visible = groupedPorts(m_store.visiblePorts(), webTestOf(m_store));
    m_pictures.update();
    showRows();
}

std::vector<RowSection> MainViewController::groups() const {
    return groupedRows(m_visible, queryTest(m_query, namesOf(m_platform)));
}

void MainViewController::showRows() {
    std::vector<RowSection> rows = groups();
    updateSidebar(rows);
    rows = rowsOf(m_selection, std::move(rows), m_store.watchedPorts());
    m_rowCount = tarnvale::rowCount(rows);
    if (listsPorts())
        m_ports.show(std::move(rows), emptyMessage(m_selection, m_query, m_store.showAll()));
    Q_EMIT rowsChanged();
}

void MainViewController::updateSidebar(const std::vector<RowSection> &groups) {
    m_sidebar.setRows(sidebarRows(groups, {.watched = watchedCount(groups, m_store.watchedPorts()),
                                           .stacks = static_cast<int>(m_store.stacks().size()),
                                           .sites = static_cast<int>(m_sites.size())}));
    Q_EMIT sidebarIndexChanged();
}

void MainViewController::handleVisibility() {
    const bool isVisible = m_store.isWindowVisible();
    m_ports.setShown(isVisible && listsPorts());
    m_updates.setShown(isVisible);
    fadeError();
    if (isVisible)
        readSites();
}

void MainViewController::readSites() {
    if (std::exchange(m_hasReadSites, true))
        return;
    whenDone(inBackground([] { return LocalSites::all(); }), this,
             [this](const std::vector<LocalSites::Site> &sites) {
                 m_sites = sites;
                 updateSidebar(groups());
                 Q_EMIT sitesChanged();
             });
}

/// Each error is shown for its whole time, even one that was there before.
void MainViewController::fadeError() {
    const int showing = ++m_errorShowings;
    if (!m_store.error() || !m_store.isWindowVisible())
        return;
    after(m_platform.clock, errorShownFor, this, [this, showing] {
        if (showing == m_errorShowings)
            m_store.setError(std::nullopt);
    });
}

// The user's part.

void MainViewController::setQuery(const QString &query) {
    if (std::exchange(m_query, query) == query)
        return;
    Q_EMIT queryChanged();
    const bool goesToPorts = !query.isEmpty() && !listsPorts();
    if (goesToPorts)
        m_selection = SidebarItem::allPorts;
    showRows();
    if (goesToPorts)
        announcePage();
}

void MainViewController::select(SidebarItem item) {
    if (std::exchange(m_selection, item) == item)
        return;
    showRows();
    announcePage();
}

void MainViewController::announcePage() {
    m_ports.setShown(m_store.isWindowVisible() && listsPorts());
    Q_EMIT selectionChanged();
}

void MainViewController::navigate(const QString &itemKey) {
    if (const auto item = sidebarItem(itemKey))
        select(*item);
}

void MainViewController::showPort(const ListeningPort &port) {
    select(SidebarItem::allPorts);
    m_ports.selectPort(port);
}

void MainViewController::toggleSidebar() {
    m_isSidebarShown = !m_isSidebarShown;
    Q_EMIT isSidebarShownChanged();
}

void MainViewController::togglePalette() {
    if (m_isWelcomeShown)
        return;
    m_isPaletteShown = !m_isPaletteShown;
    Q_EMIT isPaletteShownChanged();
}

void MainViewController::closePalette() {
    if (std::exchange(m_isPaletteShown, false))
        Q_EMIT isPaletteShownChanged();
}

void MainViewController::showWelcome() {
    if (!std::exchange(m_isWelcomeShown, true))
        Q_EMIT isWelcomeShownChanged();
}

void MainViewController::closeWelcome() {
    if (!std::exchange(m_isWelcomeShown, false))
        return;
    if (!m_platform.settings.setFlag(hasSeenWelcome, true))
        m_store.setError(tr("The settings couldn't be saved: the welcome will come back."));
    Q_EMIT isWelcomeShownChanged();
}

void MainViewController::refresh() {
    if (!m_isRefreshing)
        refreshAndTurn();
}

/// The turn outlasts a fast scan, which would only flash.
QCoro::Task<> MainViewController::refreshAndTurn() {
    const QPointer<MainViewController> self(this);
    setRefreshing(true);
    co_await m_store.refresh();
    if (!self)
        co_return;
    const QFuture<void> turned = m_platform.clock.sleep(shortestTurn);
    co_await turned;
    if (self)
        setRefreshing(false);
}

void MainViewController::setRefreshing(bool isRefreshing) {
    if (std::exchange(m_isRefreshing, isRefreshing) != isRefreshing)
        Q_EMIT isRefreshingChanged();
}

void MainViewController::openSettings() {
    if (m_actions.openSettings)
        m_actions.openSettings();
}

void MainViewController::quit() {
    if (m_actions.quit)
        m_actions.quit();
}

void MainViewController::closeWindow() {
    Q_EMIT closeRequested();
}

void MainViewController::dismissError() {
    m_store.setError(std::nullopt);
}

std::vector<MenuEntry> MainViewController::menu() {
    std::vector<MenuEntry> entries{
        menuAction(tr("Command Palette…"), [this] { togglePalette(); }),
        menuAction(tr("Show System Processes"), [this] { m_store.setShowAll(!m_store.showAll()); }),
        menuDivider(), menuAction(tr("Settings…"), [this] { openSettings(); })};
    entries[0].shortcut = QStringLiteral("Ctrl+K");
    entries[1].isChecked = m_store.showAll();
    entries[3].shortcut = QStringLiteral("Ctrl+,");
    if (m_actions.checkForUpdates)
        entries.push_back(menuAction(tr("Check for Updates…"), m_actions.checkForUpdates));
    entries.push_back(menuDivider());
    entries.push_back(menuAction(tr("Close Window"), [this] { closeWindow(); }));
    entries.back().shortcut = QStringLiteral("Ctrl+W");
    entries.push_back(menuAction(tr("Quit Tarnvale"), [this] { quit(); }));
    entries.back().shortcut = QStringLiteral("Ctrl+Q");
    return entries;
}

void MainViewController::requestMenu(const QPointF &place) {
    Q_EMIT menuReady(place, menu());
}

} // namespace tarnvale
