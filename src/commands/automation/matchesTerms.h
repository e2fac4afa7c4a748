#pragma once

#include "discovery/ListeningPort.h"

#include <QStringList>

namespace tarnvale {

/// Every one of `terms` is found in the port: at the front of its number, or anywhere in its label or command
/// whatever the case. Never without a term; empty ones don't count. Terms beyond a sane length or number find
/// nothing.
[[nodiscard]] bool matchesTerms(const ListeningPort &port, const QStringList &terms);

} // namespace tarnvale
