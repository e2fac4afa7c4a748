#pragma once

#include "presentation/settings/SettingsController.h"

#include <QDBusConnection>
#include <QObject>

#include <memory>

class QQmlEngine;
class QQuickWindow;

namespace tarnvale {

class TrayIcon;

/// What the window of settings is about. Everything outlives the window.
struct SettingsContext {
    PortStore &store;
    Platform platform;
    GlobalHotKey &hotKey;
    const TrayIcon &tray;
    QDBusConnection bus;
    SettingsActions actions;
};

/// The window of settings: made when it is asked for, gone a moment after it is closed. Main thread.
class SettingsWindow : public QObject {
    Q_OBJECT

public:
    /// `engine`, too, outlives this object; the module must be registered with it.
    SettingsWindow(QQmlEngine &engine, SettingsContext context);
    SettingsWindow(const SettingsWindow &) = delete;
    SettingsWindow &operator=(const SettingsWindow &) = delete;
    ~SettingsWindow() override;

    /// Opens it at `tab`, or brings it to the front.
    void show(SettingsController::Tab tab = SettingsController::General);

    /// Nothing to see from the moment it closes; what it holds may go a little later.
    [[nodiscard]] bool isOpen() const;

    /// Null while there is no window.
    [[nodiscard]] QQuickWindow *window() const;
    [[nodiscard]] SettingsController *controller() const;

Q_SIGNALS:
    /// The choice whether pages are shown in pictures has been made anew.
    void showWebPreviewsChanged();
    void closed();

private:
    class Opened;

    void open();
    void dropClosed();

    QQmlEngine &m_engine;
    SettingsContext m_context;
    std::unique_ptr<Opened> m_opened;
};

} // namespace tarnvale
