#include "commands/automation/SingleInstance.h"

#include "commands/automation/LocalInstance.h"
#include "commands/automation/claimOnBus.h"
#include "discovery/text.h"

#include <cstdio>
#include <string>
#include <sysexits.h>

namespace tarnvale {

namespace {

void complain(const std::string &text) {
    std::fprintf(stderr, "tarnvale: %s\n", text.c_str());
}

} // namespace

SingleInstance::SingleInstance(ApplicationService &service, const QDBusConnection &bus,
                               const QString &temporary)
    : m_service(service), m_bus(bus), m_temporary(temporary) {}

SingleInstance::~SingleInstance() = default;

Claim SingleInstance::claim(const std::optional<ApplicationRequest> &request,
                            std::chrono::milliseconds patience) {
    if (m_bus.isConnected()) {
        Claim onBus = claimOnBus(m_bus, request, patience);
        if (onBus.kind != Claim::Kind::unavailable)
            return onBus;
    }
    const auto folder = instanceFolder(m_temporary);
    if (!folder)
        return {Claim::Kind::unavailable, {}};
    m_local = std::make_unique<LocalInstance>(m_service, *folder);
    return m_local->claim(request, patience);
}

std::optional<int> SingleInstance::start(const std::optional<ApplicationRequest> &request,
                                         std::chrono::milliseconds patience) {
    const Claim result = claim(request, patience);
    switch (result.kind) {
    case Claim::Kind::taken:
    case Claim::Kind::unavailable:
        return std::nullopt;
    case Claim::Kind::answered:
        return EX_OK;
    case Claim::Kind::refused:
        complain("Tarnvale is running already and refused: " + printable(result.reason.toStdString()));
        return EX_TEMPFAIL;
    case Claim::Kind::silent:
        complain("Tarnvale is running already but doesn't answer. End it, then try again.");
        return EX_TEMPFAIL;
    }
    return std::nullopt;
}

} // namespace tarnvale
