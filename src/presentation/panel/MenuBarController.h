#pragma once

#include "platform/Platform.h"
#include "presentation/panel/PanelFooterController.h"
#include "presentation/panel/PanelWindow.h"
#include "presentation/panel/PortListController.h"
#include "presentation/tray/TrayIcon.h"

#include <QObject>
#include <QPoint>
#include <QQmlEngine>

#include <optional>

namespace tarnvale {

class PortStore;

/// The program's presence in the tray: the icon, and the panel that drops from it. Main thread.
class MenuBarController : public QObject {
    Q_OBJECT

public:
    /// Shows the icon and makes the panel. All outlive this object.
    MenuBarController(PortStore &store, const Platform &platform, QQmlEngine &engine, GlobalHotKey &hotKey,
                      PanelActions actions, const QDBusConnection &bus);

    /// Opens the panel, or closes it. In the quarter of a second after it began to close it stays closed: the
    /// click on the icon that closes it by taking its keyboard away mustn't open it again. `place` is where
    /// the tray was clicked, as its host sent it.
    /// `activationToken` is the desktop's leave to take the keyboard (xdg-activation), where one was given.
    void toggle(std::optional<QPoint> place = std::nullopt, const QString &activationToken = {});
    void open(std::optional<QPoint> place = std::nullopt, const QString &activationToken = {});
    void close();

    [[nodiscard]] bool isOpen() const { return m_panel.isVisible() && !m_panel.isClosing(); }
    [[nodiscard]] const TrayIcon &tray() const { return m_tray; }
    [[nodiscard]] TrayIcon &tray() { return m_tray; }
    [[nodiscard]] PanelWindow &panel() { return m_panel; }
    [[nodiscard]] PortListController &list() { return m_list; }

private:
    void updateInk();
    void updateAlarm();
    void scheduleMenu();
    void updateMenu();
    void place(std::optional<QPoint> clicked);
    void placeAgain();

    PortStore &m_store;
    Platform m_platform;
    PanelActions m_actions;
    PortListController m_list;
    PanelFooterController m_footer;
    TrayIcon m_tray;
    PanelWindow m_panel;
    std::optional<Instant> m_closedAt;
    std::optional<QPoint> m_clicked;
    bool m_isMenuDue = false;
};

} // namespace tarnvale
