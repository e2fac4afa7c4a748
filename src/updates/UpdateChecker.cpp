#include "updates/UpdateChecker.h"

#include "platform/Clock.h"
#include "platform/Desktop.h"
#include "platform/Settings.h"
#include "platform/background.h"
#include "updates/newestUpdate.h"
#include "updates/parseAppcast.h"
#include "updates/storedDate.h"
#include "updates/verifyFile.h"

#include <QCoroFuture>
#include <QPointer>
#include <QUrl>

#include <utility>

namespace tarnvale {

using namespace std::chrono_literals;

namespace {

constexpr auto day = 24h;
constexpr auto hour = std::chrono::milliseconds(1h);
constexpr auto calmStart = 1min;

const char *const automaticKey = "SUEnableAutomaticChecks";
const char *const lastCheckKey = "SULastCheckTime";

using Checked = std::expected<void, UpdateFailure>;

/// Whether the download is on the disk and is what its maker signed. On a background thread.
Checked closeAndVerify(PartialFile &part, const QString &path, const std::string &signature,
                       const std::string &publicKey) {
    if (auto closed = part.close(); !closed)
        return closed;
    if (!verifyFile(path, signature, publicKey))
        return std::unexpected(UpdateFailure{UpdateFailure::Kind::badSignature, {}});
    return {};
}

} // namespace

UpdateChecker::UpdateChecker(UpdateSource &source, const Platform &platform, Self self)
    : m_source(source),
      m_platform(platform),
      m_self(std::move(self)),
      m_automaticallyChecks(platform.settings.flag(automaticKey).value_or(true)) {
    if (const auto date = platform.settings.bytes(lastCheckKey))
        m_lastCheck = readStoredDate(*date);
}

UpdateChecker::~UpdateChecker() {
    giveUp();
}

void UpdateChecker::start() {
    keepChecking();
}

void UpdateChecker::check(CheckReason reason) {
    const Phase phase = m_state.phase;
    const bool isBusy = phase == Phase::downloading || phase == Phase::verifying || phase == Phase::ready;
    if (isBusy ||
        (reason == CheckReason::schedule && (phase == Phase::available || phase == Phase::checking)))
        return;
    m_reason = reason;
    if (phase == Phase::checking)
        Q_EMIT stateChanged(); // now somebody looks
    else
        runCheck();
}

QCoro::Task<> UpdateChecker::runCheck() {
    const QPointer<UpdateChecker> alive(this);
    const std::uint64_t run = ++m_run;
    show({.phase = Phase::checking});
    const QFuture<UpdateSource::Feed> reading = m_source.readFeed();
    const UpdateSource::Feed feed = co_await reading;
    if (!alive || run != m_run)
        co_return;
    if (!feed) {
        fail(feed.error());
        co_return;
    }
    const auto parsing = inBackground([bytes = *feed] { return parseAppcast(bytes); });
    const auto items = co_await parsing;
    if (!alive || run != m_run)
        co_return;
    if (!items) {
        fail({UpdateFailure::Kind::badFeed, {}});
        co_return;
    }
    noteCheck();
    auto newest = newestUpdate(*items, m_self.version);
    const bool isWorthAWord = newest.has_value() || m_reason == CheckReason::user;
    show({.phase = newest         ? Phase::available
                   : isWorthAWord ? Phase::upToDate
                                  : Phase::idle,
          .item = std::move(newest)});
    if (m_state.phase == Phase::available && m_reason == CheckReason::schedule)
        Q_EMIT foundBySchedule();
}

void UpdateChecker::download() {
    const bool isKnown = m_state.phase == Phase::available || m_state.phase == Phase::failed;
    if (isKnown && m_state.item)
        runDownload();
}

QCoro::Task<> UpdateChecker::runDownload() {
    const QPointer<UpdateChecker> alive(this);
    const std::uint64_t run = ++m_run;
    const UpdateItem item = *m_state.item;
    m_reason = CheckReason::user;
    show({.phase = Phase::downloading, .item = item});
    const QFuture<UpdateSource::Download> loading =
        m_source.download(item, [alive, run](std::int64_t received) {
            if (alive && alive->m_run == run)
                alive->showProgress(received);
        });
    const UpdateSource::Download loaded = co_await loading;
    if (!alive || run != m_run)
        co_return;
    if (!loaded) {
        fail(loaded.error());
        co_return;
    }
    m_part = *loaded;
    show({.phase = Phase::verifying, .item = item, .received = item.length});
    const auto verifying =
        inBackground([part = m_part, path = m_part->path(), signature = item.signature,
                      key = m_self.publicKey] { return closeAndVerify(*part, path, signature, key); });
    const Checked verified = co_await verifying;
    if (!alive || run != m_run)
        co_return;
    const auto part = std::exchange(m_part, nullptr);
    const auto file = verified ? part->finish() : std::unexpected(verified.error());
    if (!file) {
        part->discard();
        fail(file.error());
        co_return;
    }
    show({.phase = Phase::ready, .item = item, .received = item.length, .file = *file});
}

void UpdateChecker::openInstaller() {
    if (m_state.phase == Phase::ready)
        runOpening();
}

QCoro::Task<> UpdateChecker::runOpening() {
    const QPointer<UpdateChecker> alive(this);
    const std::uint64_t run = ++m_run;
    UpdateState state = m_state;
    show({.phase = Phase::verifying, .item = state.item, .received = state.received, .file = state.file});
    const auto verifying =
        inBackground([path = state.file, signature = state.item->signature, key = m_self.publicKey] {
            return verifyFile(path, signature, key);
        });
    const bool isGood = co_await verifying;
    if (!alive || run != m_run)
        co_return;
    if (!isGood) {
        fail({UpdateFailure::Kind::changed, {}});
        co_return;
    }
    m_platform.desktop.openUrl(QUrl::fromLocalFile(state.file).toEncoded().toStdString());
    show(std::move(state));
}

void UpdateChecker::showInFolder() {
    if (!m_state.file.isEmpty())
        m_platform.desktop.reveal(m_state.file.toStdString());
}

void UpdateChecker::openNotes() {
    if (m_state.item && !m_state.item->notesUrl.empty())
        m_platform.desktop.openUrl(m_state.item->notesUrl);
}

void UpdateChecker::retry() {
    if (m_state.phase != Phase::failed)
        return;
    if (m_state.item)
        download();
    else
        check(CheckReason::user);
}

void UpdateChecker::cancel() {
    const Phase phase = m_state.phase;
    if (phase == Phase::checking)
        dismiss();
    if (phase != Phase::downloading && phase != Phase::verifying)
        return;
    giveUp();
    UpdateState state{.phase = Phase::available, .item = m_state.item};
    if (!m_state.file.isEmpty()) // it was only looked at once more
        state = {.phase = Phase::ready, .item = m_state.item, .file = m_state.file};
    show(std::move(state));
}

void UpdateChecker::dismiss() {
    giveUp();
    show({});
}

/// Ends what is under way, without a word of it.
void UpdateChecker::giveUp() {
    ++m_run;
    m_source.cancel();
    if (const auto part = std::exchange(m_part, nullptr))
        part->discard();
}

void UpdateChecker::show(UpdateState state) {
    m_state = std::move(state);
    Q_EMIT stateChanged();
}

/// Tells of progress that can be seen: not of every piece.
void UpdateChecker::showProgress(std::int64_t received) {
    constexpr std::int64_t steps = 400;
    const std::int64_t length = m_state.item->length;
    const bool isVisible = received * steps / length != m_state.received * steps / length;
    m_state.received = received;
    if (isVisible)
        Q_EMIT stateChanged();
}

void UpdateChecker::fail(const UpdateFailure &failure) {
    const bool isSilent = m_reason == CheckReason::schedule || failure.kind == UpdateFailure::Kind::cancelled;
    if (isSilent)
        show({});
    else
        show({.phase = Phase::failed, .item = m_state.item, .failure = failure});
}

bool UpdateChecker::setAutomaticallyChecks(bool isOn) {
    m_automaticallyChecks = isOn;
    return m_platform.settings.setFlag(automaticKey, isOn);
}

void UpdateChecker::noteCheck() {
    m_lastCheck = m_platform.clock.now();
    (void)m_platform.settings.setBytes(lastCheckKey,
                                       storedDate(*m_lastCheck)); // else it is checked once more
    Q_EMIT lastCheckChanged();
}

QCoro::Task<> UpdateChecker::keepChecking() {
    const QPointer<UpdateChecker> alive(this);
    std::chrono::milliseconds wait = calmStart;
    while (alive) {
        const QFuture<void> slept = m_platform.clock.sleep(wait);
        co_await slept;
        if (!alive)
            co_return;
        checkIfDue();
        wait = untilNextCheck();
    }
}

/// Never more than an hour: the machine may be put to sleep, or its clock be set, meanwhile.
std::chrono::milliseconds UpdateChecker::untilNextCheck() const {
    const Instant now = m_platform.clock.now();
    if (!m_lastCheck || *m_lastCheck > now || now - *m_lastCheck >= day)
        return hour; // it has just been tried
    return std::min(hour, std::chrono::milliseconds(day - (now - *m_lastCheck)));
}

void UpdateChecker::checkIfDue() {
    const Instant now = m_platform.clock.now();
    const bool isDue = !m_lastCheck || *m_lastCheck > now || now - *m_lastCheck >= day;
    if (m_automaticallyChecks && isDue)
        check(CheckReason::schedule);
}

} // namespace tarnvale
