#include "presentation/panel/MenuBarController.h"

#include "platform/Clock.h"
#include "presentation/design/Appearance.h"
#include "presentation/design/popUpMenu.h"
#include "presentation/panel/trayMenu.h"
#include "presentation/shared/ActivationToken.h"
#include "presentation/tray/screenFrames.h"
#include "store/PortStore.h"

#include <QCursor>
#include <QGuiApplication>

#include <algorithm>

namespace tarnvale {

using namespace std::chrono_literals;

namespace {

constexpr auto toggleRest = 250ms;

bool isOnX11() {
    return QGuiApplication::platformName() == QStringLiteral("xcb");
}

/// Wayland tells no client where the pointer is.
std::optional<QPoint> pointer() {
    return isOnX11() ? std::optional(QCursor::pos()) : std::nullopt;
}

} // namespace

MenuBarController::MenuBarController(PortStore &store, const Platform &platform, QQmlEngine &engine,
                                     GlobalHotKey &hotKey, PanelActions actions, const QDBusConnection &bus)
    : m_store(store),
      m_platform(platform),
      m_actions(std::move(actions)),
      m_list(store, platform),
      m_footer(store, hotKey, m_actions),
      m_tray(bus, platform.clock),
      m_panel(engine, m_list, m_footer) {
    for (const auto clicked : {&TrayIcon::activated, &TrayIcon::menuRequested})
        connect(&m_tray, clicked, this, [this](std::optional<QPoint> place) { toggle(place); });
    connect(&m_panel, &PanelWindow::keyboardLost, this, &MenuBarController::close);
    connect(&m_panel, &PanelWindow::cancelled, this, &MenuBarController::close);
    connect(&m_panel, &PanelWindow::quitChosen, this, [this] {
        if (m_actions.quit)
            m_actions.quit();
    });
    connect(&m_list, &PortListController::closeRequested, this, &MenuBarController::close);
    const auto popUp = [this](const QPointF &place, const std::vector<MenuEntry> &entries) {
        if (isOpen())
            popUpMenu(entries, place.toPoint(), &m_panel);
    };
    // Otherwise the X server would give a combination to the program that has taken it, ourselves included.
    connect(&m_footer, &PanelFooterController::isRecordingHotKeyChanged, &m_panel, [this] {
        if (isOnX11())
            m_panel.setKeyboardGrabEnabled(m_footer.isRecordingHotKey());
    });
    connect(&m_list, &PortListController::menuReady, this, popUp);
    connect(&m_footer, &PanelFooterController::menuReady, this, popUp);
    for (const auto signal :
         {&PortStore::portsChanged, &PortStore::showAllChanged, &PortStore::healthChanged})
        connect(&store, signal, this, &MenuBarController::scheduleMenu);
    connect(&store, &PortStore::downWatchedPortsChanged, this, &MenuBarController::updateAlarm);
    connect(&Appearance::instance(), &Appearance::changed, this, &MenuBarController::updateInk);
    connect(qGuiApp, &QGuiApplication::screenRemoved, this, &MenuBarController::placeAgain);
    updateInk();
    updateAlarm();
    updateMenu();
}

/// Desktops whose bars have the colours of the windows; those of the others are dark.
void MenuBarController::updateInk() {
    const QByteArray desktop = qgetenv("XDG_CURRENT_DESKTOP").toUpper();
    const QByteArrayList following{"KDE", "XFCE", "MATE", "LXQT", "BUDGIE", "DEEPIN"};
    const bool follows = std::any_of(following.begin(), following.end(),
                                     [&](const QByteArray &name) { return desktop.contains(name); });
    const bool isDark = !follows || Appearance::instance().isDark();
    m_tray.setInk(isDark ? QColor(0xf4, 0xf4, 0xf5) : QColor(0x23, 0x23, 0x26));
}

void MenuBarController::updateAlarm() {
    m_tray.setAlarm(m_store.downWatchedPorts());
}

void MenuBarController::scheduleMenu() {
    if (std::exchange(m_isMenuDue, true))
        return;
    QMetaObject::invokeMethod(this, &MenuBarController::updateMenu, Qt::QueuedConnection);
}

void MenuBarController::updateMenu() {
    m_isMenuDue = false;
    m_tray.setMenu(trayMenu(m_store, m_actions, [this] { open(); }));
}

void MenuBarController::toggle(std::optional<QPoint> clicked, const QString &activationToken) {
    if (isOpen()) {
        close();
        return;
    }
    const Instant now = m_platform.clock.now();
    const bool isResting = m_closedAt && now >= *m_closedAt && now - *m_closedAt <= toggleRest;
    if (!isResting)
        open(clicked, activationToken);
}

void MenuBarController::open(std::optional<QPoint> clicked, const QString &activationToken) {
    const QString ofTray = m_tray.takeActivationToken();
    m_list.prepare();
    place(clicked);
    {
        const ActivationToken token(activationToken.isEmpty() ? ofTray : activationToken);
        m_panel.fadeIn();
    }
    m_tray.setHighlighted(true);
    m_store.setMenuOpen(true);
    m_store.refresh(); // the store itself may sleep for seconds yet
    m_store.forgetDownWatchedPorts();
}

void MenuBarController::close() {
    if (!isOpen())
        return;
    m_panel.fadeOut();
    m_tray.setHighlighted(false);
    m_store.setMenuOpen(false);
    m_closedAt = m_platform.clock.now();
}

void MenuBarController::place(std::optional<QPoint> clicked) {
    m_clicked = clicked;
    const AnchorHints hints{
        .icon = m_tray.geometry(), .place = clicked, .pointer = std::nullopt, .attention = pointer()};
    if (const auto anchor = anchorFor(hints, screenFrames()))
        m_panel.place(placePanel(*anchor, m_panel.fittingSize()), anchor->visible);
}

/// A screen has gone, maybe the one with the panel.
void MenuBarController::placeAgain() {
    if (isOpen())
        place(m_clicked);
}

} // namespace tarnvale
