#include "commands/automation/shortcuts.h"

#include "discovery/isDevPort.h"
#include "discovery/text.h"
#include "platform/Desktop.h"
#include "platform/background.h"
#include "store/holderOf.h"

#include <QCoreApplication>
#include <QCoroFuture>

#include <algorithm>

namespace tarnvale {

namespace {

/// The texts, by their own context.
struct Shortcuts {
    Q_DECLARE_TR_FUNCTIONS(Shortcuts)
};

QString notReady() {
    return Shortcuts::tr("Tarnvale isn't ready yet — try again in a moment.");
}

QString stillInUse(std::int64_t port) {
    return Shortcuts::tr("Port %1 is still in use.").arg(port);
}

DevPorts describe(const std::vector<ListeningPort> &ports) {
    DevPorts result;
    for (const ListeningPort &port : ports)
        result.lines.append(QStringLiteral("%1 · ").arg(port.port) + QString::fromStdString(portLabel(port)));
    result.dialog = result.lines.isEmpty() ? Shortcuts::tr("No dev servers are running.")
                                           : result.lines.join(QLatin1Char('\n'));
    return result;
}

/// The dev servers by a scan of one's own, on another thread.
QFuture<std::vector<ListeningPort>> scanInBackground(const PortScan &scan) {
    return inBackground([scan] {
        std::vector<ListeningPort> ports = scan();
        std::erase_if(ports, [](const ListeningPort &port) { return !isDevPort(port); });
        return ports;
    });
}

/// The record that freeing `port` stops: the first one there, or that of a process that was asked for.
std::optional<ListeningPort> recordToStop(const std::vector<ListeningPort> &ports, std::int64_t port,
                                          std::optional<Pid> expected) {
    const auto found = std::find_if(ports.begin(), ports.end(), [&](const ListeningPort &row) {
        return row.port == port && (!expected || row.pid == *expected);
    });
    return found == ports.end() ? std::nullopt : std::optional(*found);
}

} // namespace

std::string portLabel(const ListeningPort &port) {
    if (port.container)
        return printable(*port.container);
    return printable(port.projectName().value_or(port.displayName()));
}

QCoro::Task<DevPorts> listDevPorts(QPointer<PortStore> store, PortScan scan) {
    if (store)
        co_await store->refresh();
    if (store)
        co_return describe(store->visiblePorts());
    const QFuture<std::vector<ListeningPort>> scanned = scanInBackground(scan);
    const std::vector<ListeningPort> ports = co_await scanned;
    co_return describe(ports);
}

QCoro::Task<QString> freePort(QPointer<PortStore> store, std::int64_t port, std::optional<Pid> expected) {
    if (store)
        co_await store->refresh();
    if (!store)
        co_return notReady();
    const auto record = recordToStop(store->ports(), port, expected);
    if (!record)
        co_return holderOf(port, store->ports())
            ? stillInUse(port)
            : Shortcuts::tr("Nothing is listening on port %1.").arg(port);
    ListeningPort stopped = *record;
    co_await store->stop(std::move(stopped));
    if (!store)
        co_return notReady();
    if (holderOf(port, store->ports()))
        co_return store->error().value_or(stillInUse(port));
    co_return Shortcuts::tr("Stopped %1 on port %2.")
        .arg(QString::fromStdString(portLabel(*record)), QString::number(port));
}

void openPort(Desktop &desktop, std::int64_t port) {
    desktop.openUrl("http://localhost:" + std::to_string(port));
}

} // namespace tarnvale
