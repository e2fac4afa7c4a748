#pragma once

#include "updates/UpdateState.h"

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace tarnvale {

class UpdateChecker;

/// What the window of updates shows, in words, and what can be done there. Main thread.
class UpdateViewController : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("belongs to its window")

    Q_PROPERTY(Phase phase READ phase NOTIFY changed)
    Q_PROPERTY(QString symbol READ symbol NOTIFY changed)
    Q_PROPERTY(QString title READ title NOTIFY changed)
    Q_PROPERTY(QString message READ message NOTIFY changed)
    Q_PROPERTY(bool hasOffer READ hasOffer NOTIFY changed)
    Q_PROPERTY(QString notes READ notes NOTIFY changed)
    Q_PROPERTY(bool hasNotesPage READ hasNotesPage NOTIFY changed)
    Q_PROPERTY(double progress READ progress NOTIFY changed)

public:
    /// As `UpdateState::Phase`.
    enum Phase { Idle, Checking, UpToDate, Available, Downloading, Verifying, Ready, Failed };
    Q_ENUM(Phase)

    /// `checker` outlives this object; `version` is that of this program, for the user.
    UpdateViewController(UpdateChecker &checker, QString version);

    [[nodiscard]] Phase phase() const;
    [[nodiscard]] QString symbol() const;
    [[nodiscard]] QString title() const;
    [[nodiscard]] QString message() const;
    /// There is a version whose notes and progress can be shown.
    [[nodiscard]] bool hasOffer() const { return state().item.has_value(); }
    /// Plain text; empty where there are none.
    [[nodiscard]] QString notes() const;
    /// The notes, or more of them, can be opened in the browser.
    [[nodiscard]] bool hasNotesPage() const;
    /// Of the download, from 0 to 1.
    [[nodiscard]] double progress() const;

    Q_INVOKABLE void download();
    Q_INVOKABLE void cancel();
    Q_INVOKABLE void retry();
    Q_INVOKABLE void openInstaller();
    Q_INVOKABLE void showInFolder();
    Q_INVOKABLE void openNotes();
    Q_INVOKABLE void close();

Q_SIGNALS:
    void changed();
    /// The user has done with it.
    void closeRequested();

private:
    [[nodiscard]] const UpdateState &state() const;
    [[nodiscard]] QString offeredVersion() const;
    [[nodiscard]] QString readyMessage() const;

    UpdateChecker &m_checker;
    QString m_version;
};

} // namespace tarnvale
