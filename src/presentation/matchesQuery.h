#pragma once

#include "discovery/ListeningPort.h"
#include "presentation/applicationFileName.h"

#include <QString>

#include <functional>

namespace tarnvale {

/// Whether `query`, white space at its ends apart, is part of the port's number, title, command, service,
/// host application or agent; upper and lower case are the same, and so are a letter with its accent and the
/// two written one after the other. An empty query matches every port.
[[nodiscard]] bool matchesQuery(const ListeningPort &port, const QString &query,
                                const ApplicationName &applicationName = applicationFileName);

/// Whether a port is wanted.
using PortTest = std::function<bool(const ListeningPort &)>;

/// `matchesQuery` of one query for many ports.
[[nodiscard]] PortTest queryTest(const QString &query, const ApplicationName &applicationName);

} // namespace tarnvale
