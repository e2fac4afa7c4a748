#pragma once

#include "discovery/ListeningPort.h"
#include "discovery/scanListeningPorts.h"
#include "store/PortStore.h"

#include <QCoroTask>
#include <QPointer>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace tarnvale {

class Desktop;

/// The port numbers that automation takes.
constexpr std::int64_t firstPort = 1;
constexpr std::int64_t lastPort = 65535;

[[nodiscard]] constexpr bool isPortNumber(std::int64_t number) {
    return number >= firstPort && number <= lastPort;
}

/// One blocking scan, run off the main thread.
using PortScan = std::function<std::vector<ListeningPort>()>;

/// The dev servers that run, each as "3000 · shop", and the same as one text for a person.
struct DevPorts {
    QStringList lines;
    QString dialog;
};

/// The name that automation knows a port by: its container in full, else its project, else its tool. Control
/// characters in it are U+FFFD, so that no folder's name adds a line to a list.
[[nodiscard]] std::string portLabel(const ListeningPort &port);

/// The dev servers that run now. While the program is still starting (no `store`) they come from `scan`.
[[nodiscard]] QCoro::Task<DevPorts> listDevPorts(QPointer<PortStore> store, PortScan scan);

/// Stops what is first found on `port`, shown in lists or not, and tells in words what came of it. With
/// `expected`, only that process is stopped.
[[nodiscard]] QCoro::Task<QString> freePort(QPointer<PortStore> store, std::int64_t port,
                                            std::optional<Pid> expected = std::nullopt);

/// Opens `port` in the browser, whether something listens there or not.
void openPort(Desktop &desktop, std::int64_t port);

} // namespace tarnvale
