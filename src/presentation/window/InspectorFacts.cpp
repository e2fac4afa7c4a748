#include "presentation/window/InspectorFacts.h"

#include "discovery/formatUptime.h"
#include "presentation/plainText.h"
#include "presentation/portTexts.h"
#include "presentation/shared/relativeTime.h"
#include "store/PortStore.h"

#include <QCoreApplication>
#include <QLocale>

namespace tarnvale {

namespace {

constexpr std::size_t longestCommand = 10'000; // characters
constexpr double highUse = 80;                 // percent
constexpr std::int64_t longWait = 1000;        // milliseconds

QString text(const char *source) {
    return QCoreApplication::translate("PortInspector", source);
}

QString address(const RowEntry &entry) {
    return (entry.isWeb ? QStringLiteral("http://localhost:%1") : QStringLiteral("localhost:%1"))
        .arg(entry.port->port);
}

QString portNumbers(const RowEntry &entry) {
    QStringList numbers{QString::number(entry.port->port)};
    for (const std::int64_t port : entry.otherPorts)
        numbers.append(QString::number(port));
    return numbers.join(QStringLiteral(", "));
}

void addStatus(InspectorFacts &facts, const PortStore &store, const RowEntry &entry, Instant now) {
    const std::string id = entry.port->id();
    const auto health = store.health().find(id);
    if (entry.isWeb && health != store.health().end()) {
        std::tie(facts.chip, facts.chipTint) = healthChip(health->second);
        facts.chipTip = QString::fromStdString(health->second.summary());
    } else {
        facts.chip = text("Listening");
        facts.chipTint = QStringLiteral("green");
    }
    if (const auto time = store.responseTimes().find(id); time != store.responseTimes().end()) {
        facts.responseTime = text("%1 ms").arg(time->second);
        facts.isSlow = time->second > longWait;
    }
    if (entry.port->startedAt) {
        const auto age = std::chrono::duration<double>(now - *entry.port->startedAt);
        facts.uptime = text("up %1").arg(QString::fromStdString(formatUptime(age.count())));
    }
}

void addUsage(InspectorFacts &facts, const PortStore &store, const ListeningPort &port) {
    const auto history = store.cpuHistory().find(port.pid);
    if (history != store.cpuHistory().end() && !history->second.empty()) {
        facts.cpuHistory = QList<double>(history->second.begin(), history->second.end());
        facts.cpuCaption = text("CPU over the last %1 scans").arg(history->second.size());
        facts.isBusy = history->second.back() > highUse;
    }
    if (port.cpu)
        facts.cpu = QStringLiteral("%1%").arg(*port.cpu, 0, 'f', 1);
    if (port.memoryKB)
        facts.memory =
            QLocale().formattedDataSize(*port.memoryKB * 1024, 1, QLocale::DataSizeTraditionalFormat);
    facts.hasUsage = port.cpu || port.memoryKB || !facts.cpuHistory.isEmpty();
}

void addSharing(InspectorFacts &facts, const PortStore &store, const RowEntry &entry,
                const PortFiles &files) {
    const auto tunnel = store.tunnels().find(entry.port->port);
    const auto toolName = [](TunnelTool tool) { return plainText(tunnelToolName(tool)); };
    if (tunnel != store.tunnels().end()) {
        facts.shareTool = toolName(tunnel->second.tool);
        facts.publicUrl = plainText(tunnel->second.url.value_or(""));
        facts.sharing = facts.publicUrl.isEmpty() ? QStringLiteral("starting") : QStringLiteral("up");
    } else if (!entry.isWeb) {
        facts.sharing = QStringLiteral("notOffered");
    } else if (files.tunnelTool) {
        facts.shareTool = toolName(*files.tunnelTool);
        facts.sharing = QStringLiteral("available");
    } else {
        facts.sharing = QStringLiteral("noTool");
    }
}

void addActions(InspectorFacts &facts, const RowEntry &entry) {
    const ListeningPort &port = entry.port;
    facts.copyTitle = entry.isWeb ? text("Copy URL") : text("Copy Address");
    if (port.containerName() || port.service || (port.hasProject() && port.args))
        facts.restartTitle = text("Restart");
    facts.stopTitle = port.container ? text("Stop Container")
                      : port.service ? text("Stop Service")
                                     : text("Kill Process");
    facts.stopTip = stopActionTitle(port);
}

void addLog(InspectorFacts &facts, const ListeningPort &port, const std::optional<LogSource> &log) {
    if (log && log->kind == LogSource::Kind::docker) {
        facts.logName = text("docker logs %1").arg(plainText(log->container));
    } else if (log) {
        facts.logName = plainText(lastPathComponent(log->path));
        facts.isLogFile = true;
    }
    facts.canCaptureLogs = !port.service && !port.container && port.hasProject() && port.args;
}

} // namespace

const std::vector<ListRole<DetailLine>> &DetailLine::roles() {
    static const std::vector<ListRole<DetailLine>> all{
        {"label", [](const DetailLine &line) -> QVariant { return line.label; }},
        {"value", [](const DetailLine &line) -> QVariant { return line.value; }},
    };
    return all;
}

std::pair<QString, QString> healthChip(const Health &health) {
    const QString code = QString::number(health.code);
    switch (health.kind) {
    case Health::Kind::responding:
        return {code, health.code < 300   ? QStringLiteral("green")
                      : health.code < 400 ? QStringLiteral("teal")
                                          : QStringLiteral("orange")};
    case Health::Kind::serverError:
        return {code, QStringLiteral("red")};
    case Health::Kind::noResponse:
        return {text("No reply"), QStringLiteral("orange")};
    case Health::Kind::unknown:
        break;
    }
    return {QStringLiteral("—"), QStringLiteral("gray")};
}

std::vector<DetailLine> detailLines(const RowEntry &entry, const ApplicationName &applicationName) {
    const ListeningPort &port = entry.port;
    std::vector<DetailLine> lines{
        {text("Port"), portNumbers(entry)},
        {text("Address"), address(entry)},
        {text("Bound to"), port.isExposed ? text("All interfaces (LAN)") : text("This Mac only")},
        {text("PID"), QString::number(port.pid)}};
    if (port.startedAt)
        lines.push_back(
            {text("Started"), QLocale().toString(localTime(*port.startedAt), QLocale::ShortFormat)});
    if (port.service)
        lines.push_back({text("Service"), plainText(*port.service)});
    if (port.container)
        lines.push_back({text("Container"), plainText(*port.container)});
    if (port.hostApp)
        lines.push_back({text("Started from"), plainText(applicationName(*port.hostApp))});
    if (port.agent)
        lines.push_back({text("Agent"), plainText(*port.agent)});
    return lines;
}

InspectorFacts inspectorFacts(const PortStore &store, const RowEntry &entry, const InspectorFiles &files,
                              Instant now, const ApplicationName &applicationName) {
    const ListeningPort &port = entry.port;
    const PortRow row = portRow(entry, PortGroup::web, {}, now, applicationName);
    InspectorFacts facts;
    facts.port = static_cast<int>(port.port);
    facts.title = row.title;
    facts.subtitle = row.subtitle;
    facts.symbol = row.symbol;
    facts.logo = row.logo;
    facts.tint = row.tint;
    facts.inContainer = row.inContainer;
    facts.isWeb = entry.isWeb;
    facts.command = port.args ? cutPlainText(*port.args, longestCommand) : QString();
    facts.folder = port.cwd ? plainText(*port.cwd) : QString();
    facts.isWatched = store.watchedPorts().contains(port.port);
    facts.watchNote = text("A notification if port %1 stops listening.").arg(port.port);
    const auto path = store.healthPaths().find(std::to_string(port.port));
    facts.healthPath = path == store.healthPaths().end() ? QStringLiteral("/") : plainText(path->second);
    facts.hasPhone = entry.isWeb && port.isExposed;
    addStatus(facts, store, entry, now);
    addActions(facts, entry);
    addUsage(facts, store, port);
    addSharing(facts, store, entry, files.files);
    addLog(facts, port, files.log);
    return facts;
}

} // namespace tarnvale
