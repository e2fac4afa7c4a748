#pragma once

#include "discovery/ListeningPort.h"
#include "presentation/applicationFileName.h"

#include <QString>

namespace tarnvale {

/// Whether `query`, white space at its ends apart, is part of the port's number, title, command, service,
/// host application or agent; upper and lower case are the same, and so are a letter with its accent and the
/// two written one after the other. An empty query matches every port.
[[nodiscard]] bool matchesQuery(const ListeningPort &port, const QString &query,
                                const ApplicationName &applicationName = applicationFileName);

} // namespace tarnvale
