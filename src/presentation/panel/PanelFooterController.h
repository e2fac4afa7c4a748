#pragma once

#include "presentation/MenuEntry.h"
#include "presentation/shared/HotKeyRecorder.h"

#include <QObject>
#include <QPointF>
#include <QString>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

#include <functional>
#include <vector>

namespace tarnvale {

class PortStore;

/// What the panel can ask of the application around it. What is left out isn't offered.
struct PanelActions {
    std::function<void()> openWindow;
    std::function<void()> checkForUpdates;
    std::function<void()> copyInstallCommand;
    std::function<void()> quit;
};

/// The panel's last line: the menu of settings and the hot key's chip. Main thread.
class PanelFooterController : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("belongs to the panel")

    Q_PROPERTY(bool hasWindow READ hasWindow CONSTANT)
    Q_PROPERTY(QStringList hotKeyCaps READ hotKeyCaps NOTIFY hotKeyChanged)
    Q_PROPERTY(QString hotKeyNote READ hotKeyNote NOTIFY hotKeyChanged)
    Q_PROPERTY(bool isRecordingHotKey READ isRecordingHotKey NOTIFY isRecordingHotKeyChanged)

public:
    /// Both outlive this object.
    PanelFooterController(PortStore &store, GlobalHotKey &hotKey, PanelActions actions);

    [[nodiscard]] bool hasWindow() const { return m_actions.openWindow != nullptr; }
    /// The keys that open the panel; empty when none do.
    [[nodiscard]] QStringList hotKeyCaps() const;
    /// What else there is to say about them, such as how to have a key where none can be taken.
    [[nodiscard]] QString hotKeyNote() const;
    [[nodiscard]] bool isRecordingHotKey() const { return m_recorder.isRecording(); }

    /// The menu of settings, made anew.
    [[nodiscard]] std::vector<MenuEntry> menu() const;

    Q_INVOKABLE void requestMenu(const QPointF &place);
    Q_INVOKABLE void openWindow();
    Q_INVOKABLE void toggleRecording();

Q_SIGNALS:
    void hotKeyChanged();
    void isRecordingHotKeyChanged();
    /// The menu is to be shown at a place of the screen.
    void menuReady(const QPointF &place, const std::vector<tarnvale::MenuEntry> &entries);

private:
    PortStore &m_store;
    GlobalHotKey &m_hotKey;
    PanelActions m_actions;
    HotKeyRecorder m_recorder;
};

} // namespace tarnvale
