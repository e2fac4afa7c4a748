#pragma once

#include "commands/automation/ApplicationRequest.h"
#include "commands/automation/Claim.h"

#include <QDBusConnection>
#include <QDir>

#include <chrono>
#include <memory>
#include <optional>

namespace tarnvale {

class ApplicationService;
class LocalInstance;

/// Sees to it that the application runs once in a user's session, by its name on the session bus, or by a
/// lock file where there is none.
class SingleInstance {
public:
    /// `service`, which is registered on `bus` already, carries out what later starts ask for.
    SingleInstance(ApplicationService &service, const QDBusConnection &bus,
                   const QString &temporary = QDir::tempPath());
    SingleInstance(const SingleInstance &) = delete;
    SingleInstance &operator=(const SingleInstance &) = delete;
    ~SingleInstance();

    /// Nothing when this program is the first and goes on. Else the status to exit with: 0 when the first has
    /// done `request` (or there was none), 75 (EX_TEMPFAIL, sysexits.h) when it hasn't, after a line on
    /// standard error. Blocks for `patience` at the most where the first doesn't answer. A program that can't
    /// find out goes on.
    [[nodiscard]] std::optional<int> start(const std::optional<ApplicationRequest> &request,
                                           std::chrono::milliseconds patience = std::chrono::seconds(5));

private:
    [[nodiscard]] Claim claim(const std::optional<ApplicationRequest> &request,
                              std::chrono::milliseconds patience);

    ApplicationService &m_service;
    QDBusConnection m_bus;
    QString m_temporary;
    std::unique_ptr<LocalInstance> m_local;
};

} // namespace tarnvale
