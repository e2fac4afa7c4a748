#pragma once

#include "commands/hotkey/GlobalHotKey.h"

#include <QObject>
#include <QString>

namespace tarnvale {

/// Records a new combination of keys from what the user presses in our windows. Main thread.
class HotKeyRecorder : public QObject {
    Q_OBJECT

public:
    /// `hotKey` outlives this object.
    explicit HotKeyRecorder(GlobalHotKey &hotKey) : m_hotKey(hotKey) {}

    [[nodiscard]] bool isRecording() const { return m_isRecording; }

    /// From now on every key that goes down in a window of ours comes here and nowhere else.
    void start();
    /// Nothing changes.
    void stop();

Q_SIGNALS:
    void isRecordingChanged();
    /// The new combination is taken.
    void applied();
    /// It isn't, because of what `message` says.
    void refused(const QString &message);

protected:
    bool eventFilter(QObject *object, QEvent *event) override;

private:
    void setRecording(bool isRecording);
    QCoro::Task<> apply(Shortcut shortcut);

    GlobalHotKey &m_hotKey;
    bool m_isRecording = false;
};

} // namespace tarnvale
