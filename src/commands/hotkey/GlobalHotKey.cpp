#include "commands/hotkey/GlobalHotKey.h"

#include "discovery/text.h"
#include "platform/Settings.h"

#include <QCoroFuture>
#include <QLoggingCategory>

namespace tarnvale {

namespace {

Q_LOGGING_CATEGORY(hotkeyLog, "hotkey", QtInfoMsg)

constexpr const char *settingsKey = "hotKey";

/// The label for the log. What is stored may have been written by anyone.
std::string labelOf(const Shortcut &shortcut) {
    return printable(shortcut.display);
}

Shortcut stored(const Settings &settings) {
    const auto json = settings.bytes(settingsKey);
    return json ? decodeShortcut(*json).value_or(Shortcut()) : Shortcut();
}

} // namespace

GlobalHotKey::GlobalHotKey(Settings &settings, std::unique_ptr<HotKeyRegistrar> registrar)
    : m_settings(settings), m_registrar(std::move(registrar)), m_current(stored(settings)) {}

GlobalHotKey::~GlobalHotKey() = default;

void GlobalHotKey::setUp() {
    if (m_isSetUp)
        return;
    m_isSetUp = true;
    qCInfo(hotkeyLog, "hotkey: setting up %s", labelOf(m_current).c_str());
    m_registrar->onPress = [this] {
        QMetaObject::invokeMethod(this, &GlobalHotKey::handlePress, Qt::QueuedConnection);
    };
    m_registrar->onAvailabilityChange = [this] { Q_EMIT availabilityChanged(); };
    takeFirst(this, ++m_round);
}

QCoro::Task<> GlobalHotKey::takeFirst(Self self, std::uint64_t round) {
    const Shortcut wanted = self->m_current;
    const bool isTaken = co_await take(self, wanted, HotKeyOccasion::start);
    if (isTaken || !self || self->m_round != round)
        co_return;
    const Shortcut fallback;
    self->setCurrent(fallback);
    co_await take(self, fallback, HotKeyOccasion::takeBack);
}

QCoro::Task<bool> GlobalHotKey::apply(Shortcut shortcut) {
    return exchange(this, std::move(shortcut));
}

QCoro::Task<bool> GlobalHotKey::exchange(Self self, Shortcut shortcut) {
    const Shortcut old = self->m_current;
    const std::uint64_t round = ++self->m_round;
    self->m_registrar->release();
    const bool isTaken = co_await take(self, shortcut, HotKeyOccasion::userChoice);
    if (!self || self->m_round != round)
        co_return false;
    if (isTaken) {
        self->setCurrent(shortcut);
        self->save();
        co_return true;
    }
    co_await take(self, old, HotKeyOccasion::takeBack);
    co_return false;
}

QCoro::Task<bool> GlobalHotKey::take(Self self, Shortcut shortcut, HotKeyOccasion occasion) {
    const QFuture<HotKeyOutcome> answer = self->m_registrar->grab(shortcut, occasion);
    const HotKeyOutcome outcome = co_await answer;
    if (outcome)
        qCInfo(hotkeyLog, "hotkey: registered %s", labelOf(shortcut).c_str());
    else
        qCCritical(hotkeyLog, "hotkey: couldn't register %s: %d", labelOf(shortcut).c_str(),
                   static_cast<int>(outcome.error()));
    if (self) {
        self->m_isTaken = outcome.has_value();
        Q_EMIT self->availabilityChanged();
    }
    co_return outcome.has_value();
}

void GlobalHotKey::handlePress() {
    qCInfo(hotkeyLog, "hotkey: pressed");
    if (onPress)
        onPress();
}

void GlobalHotKey::setCurrent(const Shortcut &shortcut) {
    if (m_current == shortcut)
        return;
    m_current = shortcut;
    Q_EMIT currentChanged();
}

void GlobalHotKey::save() {
    const auto json = encodeShortcut(m_current);
    const bool isStored = json ? m_settings.setBytes(settingsKey, *json) : m_settings.remove(settingsKey);
    if (!isStored)
        Q_EMIT saveFailed();
}

} // namespace tarnvale
