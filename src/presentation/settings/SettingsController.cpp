#include "presentation/settings/SettingsController.h"

#include "platform/Clock.h"
#include "platform/Settings.h"
#include "presentation/shared/after.h"
#include "presentation/shared/hotKeyTexts.h"
#include "presentation/shared/relativeTime.h"
#include "store/PortStore.h"

namespace tarnvale {

using namespace std::chrono_literals;

namespace {

constexpr auto copiedFor = 1500ms;
constexpr auto updatesPause = 2s;

} // namespace

SettingsController::SettingsController(PortStore &store, const Platform &platform, GlobalHotKey &hotKey,
                                       SettingsActions actions)
    : m_store(store),
      m_platform(platform),
      m_hotKey(hotKey),
      m_actions(std::move(actions)),
      m_recorder(hotKey) {
    connect(&store, &PortStore::showAllChanged, this, &SettingsController::showAllChanged);
    connect(&store, &PortStore::launchAtLoginChanged, this, &SettingsController::launchAtLoginChanged);
    connect(&hotKey, &GlobalHotKey::currentChanged, this, &SettingsController::hotKeyChanged);
    connect(&hotKey, &GlobalHotKey::availabilityChanged, this, &SettingsController::hotKeyChanged);
    connect(&m_recorder, &HotKeyRecorder::isRecordingChanged, this, &SettingsController::isRecordingChanged);
    connect(&m_recorder, &HotKeyRecorder::applied, this, [this] { setMessage({}); });
    connect(&m_recorder, &HotKeyRecorder::refused, this, &SettingsController::setMessage);
    if (m_actions.updates) {
        m_automaticallyChecks = m_actions.updates->automaticallyChecks();
        followUpdates();
    }
}

/// What is recorded is seen on one tab alone.
void SettingsController::setTab(Tab tab) {
    if (std::exchange(m_tab, tab) == tab)
        return;
    stopRecording();
    Q_EMIT tabChanged();
}

// General.

bool SettingsController::launchAtLogin() const {
    return m_store.launchAtLogin();
}

bool SettingsController::showWindowAtLaunch() const {
    return m_platform.settings.flag(showWindowAtLaunchKey).value_or(true);
}

bool SettingsController::showWebPreviews() const {
    return m_store.previews().isEnabled();
}

bool SettingsController::showAll() const {
    return m_store.showAll();
}

/// The store tells its error where its windows show it; this one must show it, too.
void SettingsController::setLaunchAtLogin(bool isWanted) {
    setTrouble({});
    m_store.setLaunchAtLogin(isWanted);
    if (m_store.launchAtLogin() != isWanted)
        setTrouble(m_store.error().value_or(QString()));
}

void SettingsController::setFlag(const char *key, bool value, void (SettingsController::*changed)()) {
    const bool isStored = m_platform.settings.setFlag(key, value);
    setTrouble(isStored ? QString() : tr("Your choice couldn't be saved."));
    Q_EMIT(this->*changed)();
}

void SettingsController::setShowWindowAtLaunch(bool isWanted) {
    setFlag(showWindowAtLaunchKey, isWanted, &SettingsController::showWindowAtLaunchChanged);
}

void SettingsController::setShowWebPreviews(bool isWanted) {
    setFlag(WebPreviews::settingsKey, isWanted, &SettingsController::showWebPreviewsChanged);
}

void SettingsController::setShowAll(bool isWanted) {
    m_store.setShowAll(isWanted);
}

void SettingsController::setTrouble(const QString &trouble) {
    if (std::exchange(m_trouble, trouble) != trouble)
        Q_EMIT troubleChanged();
}

void SettingsController::dismissTrouble() {
    setTrouble({});
}

/// A second click counts anew: the label reads "Copied" until the time of the last one is over.
void SettingsController::copyInstallCommand() {
    m_actions.copyInstallCommand();
    if (++m_copies == 1)
        Q_EMIT copiedChanged();
    after(m_platform.clock, copiedFor, this, [this] {
        if (--m_copies == 0)
            Q_EMIT copiedChanged();
    });
}

// Updates.

void SettingsController::followUpdates() {
    const std::optional<Instant> date = m_actions.updates->lastCheck();
    const QString text =
        date ? tr("Last checked %1").arg(relativeTime(*date, m_platform.clock.now())) : QString();
    if (std::exchange(m_lastCheck, text) != text)
        Q_EMIT lastCheckChanged();
    after(m_platform.clock, updatesPause, this, [this] { followUpdates(); });
}

void SettingsController::setAutomaticallyChecks(bool isWanted) {
    if (!m_actions.updates)
        return;
    m_actions.updates->setAutomaticallyChecks(isWanted);
    m_automaticallyChecks = isWanted;
    Q_EMIT automaticallyChecksChanged();
}

void SettingsController::checkNow() {
    if (m_actions.updates)
        m_actions.updates->checkNow();
}

// Shortcut.

QStringList SettingsController::hotKeyCaps() const {
    return tarnvale::hotKeyCaps(m_hotKey);
}

QString SettingsController::hotKeyCommand() const {
    return tarnvale::hotKeyCommand(m_hotKey);
}

bool SettingsController::canRecord() const {
    return tarnvale::canRecord(m_hotKey);
}

void SettingsController::setMessage(const QString &message) {
    if (std::exchange(m_message, message) != message)
        Q_EMIT messageChanged();
}

void SettingsController::toggleRecording() {
    if (m_recorder.isRecording())
        m_recorder.stop();
    else if (canRecord())
        m_recorder.start();
}

void SettingsController::stopRecording() {
    m_recorder.stop();
}

void SettingsController::copyHotKeyCommand() {
    m_store.copyText(hotKeyCommand().toStdString());
}

// About.

QString SettingsController::versionLine() const {
    const QString version = m_actions.version.isEmpty() ? QStringLiteral("1.0") : m_actions.version;
    return m_actions.build.isEmpty() ? tr("Version %1").arg(version)
                                     : tr("Version %1 (%2)").arg(version, m_actions.build);
}

} // namespace tarnvale
