#include "presentation/window/MainWindowController.h"

#include "platform/Clock.h"
#include "platform/Settings.h"
#include "presentation/design/popUpMenu.h"
#include "presentation/shared/ActivationToken.h"
#include "presentation/shared/after.h"
#include "store/PortStore.h"

#include <QGuiApplication>
#include <QPixmapCache>
#include <QScreen>

#include <malloc.h>

namespace tarnvale {

using namespace std::chrono_literals;

namespace {

constexpr QSize preferredSize{1080, 700};
constexpr const char *placeKey = "TarnvaleMainWindow";
constexpr auto restBeforeStoring = 1s;
constexpr auto keptAfterClosing = 30s;

std::vector<QRect> freeParts() {
    std::vector<QRect> parts;
    for (const QScreen *screen : QGuiApplication::screens()) // the main one comes first
        parts.push_back(screen->availableGeometry());
    return parts;
}

} // namespace

MainWindowController::MainWindowController(PortStore &store, const Platform &platform, QQmlEngine &engine,
                                           GlobalHotKey &hotKey, const WindowActions &actions)
    : m_store(store),
      m_platform(platform),
      m_engine(engine),
      m_pictures(store, platform),
      m_view(store, platform, hotKey, m_pictures, actions),
      m_overview(store, platform,
                 {.groups = [this] { return m_view.groups(); },
                  .onSelect = [this](const ListeningPort &port) { m_view.showPort(port); },
                  .showSection = [this](SidebarItem item) { m_view.select(item); }}),
      m_stacks(store, platform),
      m_sites(platform),
      m_activity(store, platform),
      m_palette(store, platform,
                {.rows = [this] { return m_view.allRows(); },
                 .navigate = [this](SidebarItem item) { m_view.select(item); },
                 .showPort = [this](const ListeningPort &port) { m_view.showPort(port); },
                 .close = [this] { m_view.closePalette(); }}),
      m_welcome(store, hotKey, actions.copyInstallCommand) {
    connectPages();
    connectMenus();
}

MainWindowController::~MainWindowController() {
    if (m_isStoringDue)
        storePlace();
}

void MainWindowController::connectPages() {
    connect(&m_view, &MainViewController::selectionChanged, this, &MainWindowController::handlePage);
    connect(&m_store, &PortStore::isWindowVisibleChanged, this, &MainWindowController::handlePage);
    connect(&m_view, &MainViewController::rowsChanged, &m_overview, &OverviewController::scheduleUpdate);
    connect(&m_view, &MainViewController::sitesChanged, this, [this] { m_sites.setSites(m_view.sites()); });
    connect(&m_view, &MainViewController::isPaletteShownChanged, this,
            [this] { m_palette.setShown(m_view.isPaletteShown()); });
    connect(&m_view, &MainViewController::closeRequested, this, [this] {
        if (m_window)
            m_window->close();
    });
}

void MainWindowController::connectMenus() {
    const auto popUp = [this](const QPointF &place, const std::vector<MenuEntry> &entries) {
        if (isVisible())
            popUpMenu(entries, place.toPoint(), m_window.get());
    };
    connect(&m_view, &MainViewController::menuReady, this, popUp);
    connect(m_view.ports(), &PortsController::menuReady, this, popUp);
    connect(&m_overview, &OverviewController::menuReady, this, popUp);
    connect(m_view.ports()->inspector(), &InspectorController::menuRequested, m_view.ports(),
            &PortsController::requestMenu);
}

/// Only the page that is looked at is worked out.
void MainWindowController::handlePage() {
    const bool isVisible = m_store.isWindowVisible();
    m_overview.setShown(isVisible && m_view.page() == SidebarItem::overview);
    m_stacks.setShown(isVisible && m_view.page() == SidebarItem::stacks);
    m_activity.setShown(isVisible && m_view.page() == SidebarItem::activity);
    if (m_window)
        m_window->setTitle(m_view.title());
}

void MainWindowController::makeWindow() {
    m_window = std::make_unique<MainWindow>(
        m_engine, QVariantMap{{QStringLiteral("view"), QVariant::fromValue(&m_view)},
                              {QStringLiteral("overview"), QVariant::fromValue(&m_overview)},
                              {QStringLiteral("stacks"), QVariant::fromValue(&m_stacks)},
                              {QStringLiteral("sites"), QVariant::fromValue(&m_sites)},
                              {QStringLiteral("activity"), QVariant::fromValue(&m_activity)},
                              {QStringLiteral("palette"), QVariant::fromValue(&m_palette)},
                              {QStringLiteral("welcome"), QVariant::fromValue(&m_welcome)}});
    m_window->setTitle(m_view.title());
    const auto stored = windowPlaceFromJson(m_platform.settings.bytes(placeKey).value_or(""));
    m_place = {frameFor(stored, preferredSize, MainWindow::leastSize(), freeParts()),
               stored && stored->isMaximized};
    m_window->setGeometry(m_place.frame);
    connect(m_window.get(), &MainWindow::closed, this, &MainWindowController::handleClosed);
    connect(m_window.get(), &MainWindow::placeChanged, this, &MainWindowController::storePlaceSoon);
}

void MainWindowController::show(const QString &activationToken) {
    ++m_closings; // what was to be given back is needed
    const ActivationToken token(activationToken);
    const bool wasVisible = isVisible();
    if (!m_window)
        makeWindow();
    if (!m_store.isWindowVisible()) {
        m_store.setWindowVisible(true);
        m_store.refresh();
    }
    if (!wasVisible && m_place.isMaximized)
        m_window->setWindowStates(Qt::WindowMaximized);
    else if (!wasVisible || m_window->windowStates() & Qt::WindowMinimized)
        m_window->setWindowStates(m_window->windowStates() & ~Qt::WindowMinimized);
    m_window->setVisible(true); // show() would take back that it is maximized
    m_window->raise();
    m_window->requestActivate();
}

void MainWindowController::handleClosed() {
    if (m_isStoringDue)
        storePlace();
    m_view.closePalette();
    m_store.setWindowVisible(false);
    after(m_platform.clock, keptAfterClosing, this, [this, closing = ++m_closings] {
        if (closing == m_closings)
            giveBack();
    });
}

/// A window that nobody has looked at for a while is only memory.
void MainWindowController::giveBack() {
    m_window.reset();
    m_engine.collectGarbage();
    m_engine.trimComponentCache();
    QPixmapCache::clear();
    malloc_trim(0);
}

void MainWindowController::storePlaceSoon() {
    if (!isVisible() || std::exchange(m_isStoringDue, true))
        return;
    after(m_platform.clock, restBeforeStoring, this, [this] {
        if (m_isStoringDue)
            storePlace();
    });
}

/// A place that can't be stored is not worth an error.
void MainWindowController::storePlace() {
    m_isStoringDue = false;
    if (!m_window)
        return;
    m_place.isMaximized = m_window->windowStates() & Qt::WindowMaximized;
    if (!m_place.isMaximized)
        m_place.frame = m_window->geometry();
    static_cast<void>(m_platform.settings.setBytes(placeKey, toJson(m_place)));
}

} // namespace tarnvale
