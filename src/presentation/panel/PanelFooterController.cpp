#include "presentation/panel/PanelFooterController.h"

#include "presentation/shared/hotKeyTexts.h"
#include "store/PortStore.h"

namespace tarnvale {

PanelFooterController::PanelFooterController(PortStore &store, GlobalHotKey &hotKey, PanelActions actions)
    : m_store(store), m_hotKey(hotKey), m_actions(std::move(actions)), m_recorder(hotKey) {
    connect(&hotKey, &GlobalHotKey::currentChanged, this, &PanelFooterController::hotKeyChanged);
    connect(&hotKey, &GlobalHotKey::availabilityChanged, this, &PanelFooterController::hotKeyChanged);
    connect(&m_recorder, &HotKeyRecorder::isRecordingChanged, this,
            &PanelFooterController::isRecordingHotKeyChanged);
    connect(&m_recorder, &HotKeyRecorder::applied, this, [this] { m_store.setError(std::nullopt); });
    connect(&m_recorder, &HotKeyRecorder::refused, this,
            [this](const QString &message) { m_store.setError(message); });
    connect(&store, &PortStore::isMenuOpenChanged, this, [this] {
        if (!m_store.isMenuOpen())
            m_recorder.stop();
    });
}

QStringList PanelFooterController::hotKeyCaps() const {
    return tarnvale::hotKeyCaps(m_hotKey);
}

QString PanelFooterController::hotKeyNote() const {
    const QString command = hotKeyCommand(m_hotKey);
    if (command.isEmpty())
        return {};
    return tr("This desktop lets no application take a key. Bind one to this command in its settings:\n%1")
        .arg(command);
}

std::vector<MenuEntry> PanelFooterController::menu() const {
    PortStore &store = m_store;
    std::vector<MenuEntry> entries;
    MenuEntry all = menuAction(tr("Show System Processes"), [&store] { store.setShowAll(!store.showAll()); });
    all.isChecked = store.showAll();
    entries.push_back(std::move(all));
    MenuEntry login =
        menuAction(tr("Launch at Login"), [&store] { store.setLaunchAtLogin(!store.launchAtLogin()); });
    login.isChecked = store.launchAtLogin();
    entries.push_back(std::move(login));
    if (m_actions.openWindow)
        entries.push_back(menuAction(tr("Open Tarnvale Window"), m_actions.openWindow));
    entries.push_back(menuDivider());
    entries.push_back(
        menuAction(tr("Copy “tarnctl” Command-Line Install Command"), m_actions.copyInstallCommand));
    if (m_actions.checkForUpdates)
        entries.push_back(menuAction(tr("Check for Updates…"), m_actions.checkForUpdates));
    entries.push_back(menuDivider());
    MenuEntry quit = menuAction(tr("Quit Tarnvale"), m_actions.quit);
    quit.shortcut = QStringLiteral("Ctrl+Q");
    entries.push_back(std::move(quit));
    return entries;
}

void PanelFooterController::requestMenu(const QPointF &place) {
    Q_EMIT menuReady(place, menu());
}

void PanelFooterController::openWindow() {
    if (m_actions.openWindow)
        m_actions.openWindow();
}

void PanelFooterController::toggleRecording() {
    if (m_recorder.isRecording())
        m_recorder.stop();
    else if (canRecord(m_hotKey))
        m_recorder.start();
    else if (const QString note = hotKeyNote(); !note.isEmpty())
        m_store.setError(note);
}

} // namespace tarnvale
