#pragma once

#include "platform/Platform.h"
#include "updates/UpdateSource.h"
#include "updates/UpdateState.h"

#include <QCoroTask>
#include <QObject>

#include <memory>
#include <optional>
#include <string>

namespace tarnvale {

/// Who wants to know whether there is a newer version.
enum class CheckReason : std::uint8_t {
    user,     ///< sees everything that comes of it
    schedule, ///< only something newer is worth a word
};

/// From the question whether there is a newer version to the file that installs it, one step at a time; each
/// step after the question is the user's. Main thread.
class UpdateChecker : public QObject {
    Q_OBJECT

public:
    /// What this copy of the program is.
    struct Self {
        std::string version;   ///< as the feed counts versions
        std::string publicKey; ///< Ed25519 in Base64
    };

    /// All that is given outlives this object.
    UpdateChecker(UpdateSource &source, const Platform &platform, Self self);
    UpdateChecker(const UpdateChecker &) = delete;
    UpdateChecker &operator=(const UpdateChecker &) = delete;
    ~UpdateChecker() override;

    /// Checks from now on once a day by itself, as long as this is allowed: for the first time after a
    /// minute, and after a failure once an hour. Once.
    void start();

    [[nodiscard]] const UpdateState &state() const { return m_state; }

    /// Reads the feed. Ignored while an update is being fetched or ready; for the schedule, while there is
    /// anything to show.
    void check(CheckReason reason);
    /// Fetches what is available, or what failed to come.
    void download();
    /// Gives up what is under way: without a check there is nothing to show, without a download still the
    /// item.
    void cancel();
    /// Gives up what is under way and forgets what was found. A file that is ready stays.
    void dismiss();
    /// Does again what has failed.
    void retry();

    /// Opens the file that is ready with the desktop's program for its kind, after one more look at its
    /// signature.
    void openInstaller();
    void showInFolder();
    /// Opens the notes' page in the browser, where they have one.
    void openNotes();

    /// On by default.
    [[nodiscard]] bool automaticallyChecks() const { return m_automaticallyChecks; }
    /// In force until the program ends even when it can't be stored; whether it was.
    bool setAutomaticallyChecks(bool isOn);
    /// When the feed was read last; nothing: never.
    [[nodiscard]] std::optional<Instant> lastCheck() const { return m_lastCheck; }

Q_SIGNALS:
    void stateChanged();
    void lastCheckChanged();
    /// A scheduled check has found something newer, which is in the state.
    void foundBySchedule();

private:
    using Phase = UpdateState::Phase;

    QCoro::Task<> runCheck();
    QCoro::Task<> runDownload();
    QCoro::Task<> runOpening();
    QCoro::Task<> keepChecking();
    [[nodiscard]] std::chrono::milliseconds untilNextCheck() const;
    void checkIfDue();
    void noteCheck();
    void show(UpdateState state);
    void showProgress(std::int64_t received);
    void fail(const UpdateFailure &failure);
    void giveUp();

    UpdateSource &m_source;
    Platform m_platform;
    Self m_self;
    UpdateState m_state;
    std::shared_ptr<PartialFile> m_part; ///< while it is being checked
    CheckReason m_reason = CheckReason::user;
    std::uint64_t m_run = 0; ///< a step that was begun under another number is given up
    bool m_automaticallyChecks = true;
    std::optional<Instant> m_lastCheck;
};

} // namespace tarnvale
