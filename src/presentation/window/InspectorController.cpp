#include "presentation/window/InspectorController.h"

#include "platform/Clock.h"
#include "platform/background.h"
#include "presentation/design/pictureUrl.h"
#include "presentation/shared/after.h"
#include "probes/LanAddress.h"
#include "probes/findLogSource.h"
#include "probes/isValidHealthPath.h"
#include "probes/qrImage.h"
#include "store/PortStore.h"

#include <QImage>

namespace tarnvale {

namespace {

QString qrCodeOf(const QString &url) {
    const auto code = qrImage(url.toStdString());
    if (!code)
        return {};
    return pictureUrl(
        QImage(code->pixels.data(), code->side, code->side, code->side, QImage::Format_Grayscale8));
}

} // namespace

InspectorController::InspectorController(PortStore &store, const Platform &platform)
    : m_store(store),
      m_platform(platform),
      m_log(platform),
      m_kill(platform.clock, armedFor),
      m_copies(platform.clock, copiedFor) {
    connect(&m_kill, &MomentaryKeys::changed, this, &InspectorController::armedKillChanged);
    connect(&m_copies, &MomentaryKeys::changed, this, &InspectorController::copiedFieldChanged);
    for (const auto signal :
         {&PortStore::healthChanged, &PortStore::responseTimesChanged, &PortStore::watchedPortsChanged,
          &PortStore::tunnelsChanged, &PortStore::healthPathsChanged, &PortStore::cpuHistoryChanged})
        connect(&store, signal, this, &InspectorController::update);
}

void InspectorController::begin(const QString &rowId) {
    m_rowId = rowId;
    m_files = {};
    m_phoneUrl.clear();
    m_phoneCode.clear();
    m_isReading = false;
    m_kill.clear();
    m_copies.clear();
    m_log.follow(std::nullopt);
    Q_EMIT rowIdChanged();
    Q_EMIT phoneChanged();
}

void InspectorController::inspect(const std::optional<RowEntry> &entry) {
    m_entry = entry;
    if (const QString id = entry ? QString::fromStdString(entry->id()) : QString(); id != m_rowId)
        begin(id);
    update();
    if (!m_entry)
        return;
    readFiles();
    readPhone();
}

void InspectorController::setShown(bool isShown) {
    m_isShown = isShown;
    followLog();
    if (isShown)
        update();
}

void InspectorController::update() {
    if (m_entry) {
        const ApplicationName names = namesOf(m_platform);
        m_facts = inspectorFacts(m_store, *m_entry, m_files, m_platform.clock.now(), names);
        m_details.setRows(detailLines(*m_entry, names));
    }
    Q_EMIT factsChanged();
}

void InspectorController::readFiles() {
    if (std::exchange(m_isReading, true))
        return;
    const auto read = [port = m_entry->port, log = m_store.launchLog(m_entry->port),
                       &tools = m_platform.tools] {
        return InspectorFiles{readPortFiles(port, log, tools), findLogSource(port, log, tools)};
    };
    whenDone(inBackground(read), this, [this, id = m_rowId](const InspectorFiles &files) {
        if (id != m_rowId)
            return;
        m_isReading = false;
        m_files = files;
        followLog();
        update();
    });
}

void InspectorController::followLog() {
    m_log.follow(m_isShown ? m_files.log : std::nullopt);
}

/// The network may change while the port is looked at.
void InspectorController::readPhone() {
    if (!m_facts.hasPhone)
        return;
    const auto read = [port = m_entry->port->port] { return lanURL(port); };
    whenDone(inBackground(read), this, [this, id = m_rowId](const std::optional<std::string> &url) {
        const QString next = QString::fromStdString(url.value_or(""));
        if (id != m_rowId || std::exchange(m_phoneUrl, next) == next)
            return;
        m_phoneCode = next.isEmpty() ? QString() : qrCodeOf(next);
        Q_EMIT phoneChanged();
    });
}

// The user's part.

void InspectorController::openInBrowser() {
    if (m_entry)
        m_store.openInBrowser(m_entry->port);
}

void InspectorController::copyAddress() {
    if (m_entry)
        copyField(QStringLiteral("address"),
                  (m_entry->isWeb ? QStringLiteral("http://localhost:%1") : QStringLiteral("localhost:%1"))
                      .arg(m_entry->port->port));
}

void InspectorController::restart() {
    if (m_entry)
        m_store.restart(m_entry->port);
}

void InspectorController::requestMenu(const QPointF &place) {
    Q_EMIT menuRequested(m_rowId, place);
}

void InspectorController::copyField(const QString &field, const QString &text) {
    m_store.copyText(text.toStdString());
    m_copies.hold(field);
}

void InspectorController::revealFolder() {
    if (m_entry)
        m_store.reveal(m_entry->port);
}

void InspectorController::setWatched(bool isWatched) {
    if (m_entry && isWatched != m_store.watchedPorts().contains(m_entry->port->port))
        m_store.toggleWatch(m_entry->port);
}

bool InspectorController::canSaveHealthPath(const QString &path) const {
    return path != m_facts.healthPath && isValidHealthPath(path.toStdString());
}

void InspectorController::saveHealthPath(const QString &path) {
    if (m_entry && canSaveHealthPath(path))
        m_store.setHealthPath(path.toStdString(), m_entry->port);
}

void InspectorController::share() {
    if (m_entry)
        m_store.share(m_entry->port);
}

void InspectorController::stopSharing() {
    if (m_entry)
        m_store.stopSharing(m_entry->port->port);
}

void InspectorController::copyPublicURL() {
    if (m_entry)
        copyField(QStringLiteral("publicUrl"), m_facts.publicUrl);
}

void InspectorController::openLog() {
    if (m_files.log && m_files.log->kind == LogSource::Kind::file)
        m_store.openInConsole(m_files.log->path);
}

void InspectorController::stopInTwoSteps() {
    if (m_entry && m_kill.confirm(m_rowId))
        m_store.stop(m_entry->port);
}

} // namespace tarnvale
