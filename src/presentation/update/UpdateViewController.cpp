#include "presentation/update/UpdateViewController.h"

#include "updates/UpdateChecker.h"

#include <QDir>
#include <QFileInfo>
#include <QLocale>

namespace tarnvale {

namespace {

QString sizeText(std::int64_t bytes) {
    return QLocale().formattedDataSize(bytes, 1, QLocale::DataSizeSIFormat);
}

} // namespace

UpdateViewController::UpdateViewController(UpdateChecker &checker, QString version)
    : m_checker(checker), m_version(std::move(version)) {
    connect(&checker, &UpdateChecker::stateChanged, this, &UpdateViewController::changed);
}

const UpdateState &UpdateViewController::state() const {
    return m_checker.state();
}

UpdateViewController::Phase UpdateViewController::phase() const {
    return static_cast<Phase>(state().phase);
}

QString UpdateViewController::offeredVersion() const {
    return hasOffer() ? QString::fromStdString(state().item->name()) : QString();
}

QString UpdateViewController::symbol() const {
    switch (phase()) {
    case Idle:
    case Checking:
        return QStringLiteral("arrow.clockwise");
    case UpToDate:
        return QStringLiteral("checkmark");
    case Failed:
        return QStringLiteral("exclamationmark.triangle.fill");
    default:
        return QStringLiteral("shippingbox.fill");
    }
}

QString UpdateViewController::title() const {
    switch (phase()) {
    case Idle:
    case Checking:
        return tr("Checking for updates…");
    case UpToDate:
        return tr("You're up to date");
    case Available:
        return tr("Tarnvale %1 is available").arg(offeredVersion());
    case Downloading:
        return tr("Downloading Tarnvale %1…").arg(offeredVersion());
    case Verifying:
        return tr("Checking the signature…");
    case Ready:
        return tr("Tarnvale %1 is ready to install").arg(offeredVersion());
    case Failed:
        return hasOffer() ? tr("The download failed") : tr("The check for updates failed");
    }
    return {};
}

QString UpdateViewController::message() const {
    switch (phase()) {
    case Idle:
    case Checking:
        return tr("This takes a moment.");
    case UpToDate:
        return tr("Tarnvale %1 is the newest version.").arg(m_version);
    case Available:
        return tr("You have %1. The download takes %2.").arg(m_version, sizeText(state().item->length));
    case Downloading:
        return tr("%1 of %2").arg(sizeText(state().received), sizeText(state().item->length));
    case Verifying:
        return tr("Only what Tarnvale's maker has signed is offered to you.");
    case Ready:
        return readyMessage();
    case Failed:
        return sentence(state().failure);
    }
    return {};
}

QString UpdateViewController::readyMessage() const {
    const QFileInfo file(state().file);
    return tr("%1 is in %2.").arg(file.fileName(), file.dir().dirName());
}

QString UpdateViewController::notes() const {
    return hasOffer() ? QString::fromStdString(state().item->notes) : QString();
}

bool UpdateViewController::hasNotesPage() const {
    return hasOffer() && !state().item->notesUrl.empty();
}

double UpdateViewController::progress() const {
    if (!hasOffer())
        return 0;
    return static_cast<double>(state().received) / static_cast<double>(state().item->length);
}

void UpdateViewController::download() {
    m_checker.download();
}

void UpdateViewController::cancel() {
    m_checker.cancel();
}

void UpdateViewController::retry() {
    m_checker.retry();
}

void UpdateViewController::openInstaller() {
    m_checker.openInstaller();
}

void UpdateViewController::showInFolder() {
    m_checker.showInFolder();
}

void UpdateViewController::openNotes() {
    m_checker.openNotes();
}

void UpdateViewController::close() {
    Q_EMIT closeRequested();
}

} // namespace tarnvale
