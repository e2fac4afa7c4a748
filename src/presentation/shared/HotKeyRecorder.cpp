#include "presentation/shared/HotKeyRecorder.h"

#include "commands/hotkey/KeyPress.h"
#include "commands/hotkey/keycaps.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QPointer>

namespace tarnvale {

namespace {

/// What stands on the key, as far as Qt knows: its codes for characters are those of Unicode.
std::string writtenBy(const QKeyEvent &event) {
    constexpr int firstNamed = 0x01000000;
    if (event.key() <= 0 || event.key() >= firstNamed)
        return {};
    const auto character = static_cast<char32_t>(event.key());
    return QString::fromUcs4(&character, 1).toStdString();
}

KeyPress keyPress(const QKeyEvent &event) {
    const Qt::KeyboardModifiers modifiers = event.modifiers();
    return {.keycode = event.nativeScanCode(),
            .keysym = event.nativeVirtualKey(),
            .text = writtenBy(event),
            .control = modifiers.testFlag(Qt::ControlModifier),
            .option = modifiers.testFlag(Qt::AltModifier),
            .shift = modifiers.testFlag(Qt::ShiftModifier),
            .command = modifiers.testFlag(Qt::MetaModifier)};
}

} // namespace

void HotKeyRecorder::start() {
    if (m_isRecording)
        return;
    QCoreApplication::instance()->installEventFilter(this);
    setRecording(true);
}

void HotKeyRecorder::stop() {
    if (!m_isRecording)
        return;
    QCoreApplication::instance()->removeEventFilter(this);
    setRecording(false);
}

void HotKeyRecorder::setRecording(bool isRecording) {
    m_isRecording = isRecording;
    Q_EMIT isRecordingChanged();
}

bool HotKeyRecorder::eventFilter(QObject *object, QEvent *event) {
    if (event->type() == QEvent::ShortcutOverride || event->type() == QEvent::KeyRelease)
        return true;
    if (event->type() != QEvent::KeyPress)
        return QObject::eventFilter(object, event);
    const KeyPress press = keyPress(static_cast<const QKeyEvent &>(*event));
    if (isEscape(press)) {
        stop();
    } else if (const auto shortcut = shortcutFor(press)) {
        stop();
        apply(*shortcut);
    }
    return true;
}

QCoro::Task<> HotKeyRecorder::apply(Shortcut shortcut) {
    const QPointer<HotKeyRecorder> alive(this);
    const bool isTaken = co_await m_hotKey.apply(shortcut);
    if (!alive)
        co_return;
    if (isTaken)
        Q_EMIT applied();
    else
        Q_EMIT refused(tr("%1 is already used by another app.")
                           .arg(QString::fromStdString(displayText(shortcut.display))));
}

} // namespace tarnvale
