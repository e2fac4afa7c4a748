#pragma once

#include "discovery/Instant.h"
#include "platform/Platform.h"
#include "presentation/settings/DesktopFacts.h"
#include "presentation/shared/HotKeyRecorder.h"
#include "presentation/shared/KeyedListModel.h"

#include <QAbstractItemModel>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

#include <functional>
#include <optional>

namespace tarnvale {

class PortStore;

/// The updater, as settings need it. None is left out.
struct UpdateChoices {
    std::function<bool()> automaticallyChecks;
    std::function<void(bool)> setAutomaticallyChecks;
    std::function<void()> checkNow;
    std::function<std::optional<Instant>()> lastCheck;
};

/// What settings need of the application around them.
struct SettingsActions {
    QString version; ///< empty: not known
    QString build;
    std::function<void()> copyInstallCommand;
    std::optional<UpdateChoices> updates; ///< nothing in a build that doesn't update itself
};

/// The choices of the user. Each is stored at once. Main thread.
class SettingsController : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("belongs to the window of settings")

    Q_PROPERTY(Tab tab READ tab WRITE setTab NOTIFY tabChanged)
    Q_PROPERTY(bool launchAtLogin READ launchAtLogin NOTIFY launchAtLoginChanged)
    Q_PROPERTY(bool showWindowAtLaunch READ showWindowAtLaunch NOTIFY showWindowAtLaunchChanged)
    Q_PROPERTY(bool showWebPreviews READ showWebPreviews NOTIFY showWebPreviewsChanged)
    Q_PROPERTY(bool showAll READ showAll NOTIFY showAllChanged)
    Q_PROPERTY(bool copied READ copied NOTIFY copiedChanged)
    Q_PROPERTY(QString trouble READ trouble NOTIFY troubleChanged)
    Q_PROPERTY(bool hasUpdates READ hasUpdates CONSTANT)
    Q_PROPERTY(bool automaticallyChecks READ automaticallyChecks NOTIFY automaticallyChecksChanged)
    Q_PROPERTY(QString lastCheck READ lastCheck NOTIFY lastCheckChanged)
    Q_PROPERTY(QStringList hotKeyCaps READ hotKeyCaps NOTIFY hotKeyChanged)
    Q_PROPERTY(QString hotKeyCommand READ hotKeyCommand NOTIFY hotKeyChanged)
    Q_PROPERTY(bool canRecord READ canRecord NOTIFY hotKeyChanged)
    Q_PROPERTY(bool isRecording READ isRecording NOTIFY isRecordingChanged)
    Q_PROPERTY(QString message READ message NOTIFY messageChanged)
    Q_PROPERTY(QAbstractItemModel *desktop READ desktop CONSTANT)
    Q_PROPERTY(QString versionLine READ versionLine CONSTANT)

public:
    enum Tab { General, Shortcut, About };
    Q_ENUM(Tab)

    /// The user's choice whether the window opens with the program; absent, or no Boolean, it is yes.
    static constexpr const char *showWindowAtLaunchKey = "showWindowAtLaunch";

    /// The references outlive this object, and so does what `platform` refers to.
    SettingsController(PortStore &store, const Platform &platform, GlobalHotKey &hotKey,
                       SettingsActions actions);

    [[nodiscard]] Tab tab() const { return m_tab; }
    void setTab(Tab tab);

    [[nodiscard]] bool launchAtLogin() const;
    [[nodiscard]] bool showWindowAtLaunch() const;
    [[nodiscard]] bool showWebPreviews() const;
    [[nodiscard]] bool showAll() const;
    [[nodiscard]] bool copied() const { return m_copies > 0; } ///< the install command, just now
    /// Why the last choice couldn't be kept; empty when it could.
    [[nodiscard]] const QString &trouble() const { return m_trouble; }

    [[nodiscard]] bool hasUpdates() const { return m_actions.updates.has_value(); }
    [[nodiscard]] bool automaticallyChecks() const { return m_automaticallyChecks; }
    [[nodiscard]] const QString &lastCheck() const { return m_lastCheck; } ///< "Last checked ..."; or empty

    [[nodiscard]] QStringList hotKeyCaps() const;
    [[nodiscard]] QString hotKeyCommand() const;
    [[nodiscard]] bool canRecord() const;
    [[nodiscard]] bool isRecording() const { return m_recorder.isRecording(); }
    [[nodiscard]] const QString &message() const { return m_message; } ///< why the last keys weren't taken

    [[nodiscard]] QAbstractItemModel *desktop() { return &m_desktop; }
    void setDesktopFacts(const DesktopFacts &facts) { m_desktop.setRows(desktopRows(facts)); }

    [[nodiscard]] QString versionLine() const;

    Q_INVOKABLE void setLaunchAtLogin(bool isWanted);
    Q_INVOKABLE void setShowWindowAtLaunch(bool isWanted);
    Q_INVOKABLE void setShowWebPreviews(bool isWanted);
    Q_INVOKABLE void setShowAll(bool isWanted);
    Q_INVOKABLE void dismissTrouble();
    Q_INVOKABLE void copyInstallCommand();
    Q_INVOKABLE void setAutomaticallyChecks(bool isWanted);
    Q_INVOKABLE void checkNow();
    /// Begins to record a combination, or ends it.
    Q_INVOKABLE void toggleRecording();
    Q_INVOKABLE void stopRecording();
    Q_INVOKABLE void copyHotKeyCommand();

Q_SIGNALS:
    void tabChanged();
    void launchAtLoginChanged();
    void showWindowAtLaunchChanged();
    void showWebPreviewsChanged();
    void showAllChanged();
    void copiedChanged();
    void troubleChanged();
    void automaticallyChecksChanged();
    void lastCheckChanged();
    void hotKeyChanged();
    void isRecordingChanged();
    void messageChanged();

private:
    void setFlag(const char *key, bool value, void (SettingsController::*changed)());
    void setTrouble(const QString &trouble);
    void setMessage(const QString &message);
    void followUpdates();

    PortStore &m_store;
    Platform m_platform;
    GlobalHotKey &m_hotKey;
    SettingsActions m_actions;
    HotKeyRecorder m_recorder;
    KeyedListModel<DesktopRow> m_desktop;
    Tab m_tab = General;
    QString m_trouble;
    QString m_message;
    QString m_lastCheck;
    int m_copies = 0; ///< of which the last 1.5 seconds have seen
    bool m_automaticallyChecks = false;
};

} // namespace tarnvale
