#pragma once

#include <QObject>
#include <QString>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

#include <functional>

namespace tarnvale {

class GlobalHotKey;
class PortStore;

/// What the first start asks and tells its user. Main thread.
class WelcomeController : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("belongs to the window")

    Q_PROPERTY(QStringList hotKeyCaps READ hotKeyCaps NOTIFY hotKeyChanged)
    Q_PROPERTY(QString hotKeyCommand READ hotKeyCommand NOTIFY hotKeyChanged)
    Q_PROPERTY(bool launchAtLogin READ launchAtLogin NOTIFY launchAtLoginChanged)
    Q_PROPERTY(bool notificationsAsked READ notificationsAsked NOTIFY notificationsAskedChanged)
    Q_PROPERTY(bool copied READ copied NOTIFY copiedChanged)

public:
    /// The references outlive this object.
    WelcomeController(PortStore &store, GlobalHotKey &hotKey, std::function<void()> copyInstallCommand);

    /// Those in force; empty when no keys open the panel.
    [[nodiscard]] QStringList hotKeyCaps() const;
    [[nodiscard]] QString hotKeyCommand() const; ///< to be bound to a key, where that is the only way
    [[nodiscard]] bool launchAtLogin() const;
    [[nodiscard]] bool notificationsAsked() const { return m_notificationsAsked; }
    [[nodiscard]] bool copied() const { return m_copied; } ///< the install command, at least once

    Q_INVOKABLE void setLaunchAtLogin(bool isWanted);
    Q_INVOKABLE void allowNotifications();
    Q_INVOKABLE void copyInstallCommand();
    /// The user has read it.
    Q_INVOKABLE void finish();

Q_SIGNALS:
    void hotKeyChanged();
    void launchAtLoginChanged();
    void notificationsAskedChanged();
    void copiedChanged();
    void done();

private:
    PortStore &m_store;
    GlobalHotKey &m_hotKey;
    std::function<void()> m_copyInstallCommand;
    bool m_notificationsAsked = false;
    bool m_copied = false;
};

} // namespace tarnvale
