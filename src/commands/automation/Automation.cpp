#include "commands/automation/Automation.h"

#include "commands/automation/RunnerService.h"
#include "commands/automation/SearchProvider.h"
#include "commands/automation/ShortcutsService.h"
#include "commands/automation/applicationId.h"

namespace tarnvale {

namespace {

const QString searchPath = applicationPath + QStringLiteral("/SearchProvider");
const QString runnerPath = applicationPath + QStringLiteral("/Runner");

} // namespace

Automation::Automation(Desktop &desktop, const QDBusConnection &bus)
    : m_target{.desktop = desktop, .store = nullptr},
      m_bus(bus),
      m_application(new ApplicationService(&m_root, bus, m_queue)) {
    new ShortcutsService(&m_root, bus, m_queue);
    addSearch();
    m_bus.registerObject(applicationPath, &m_root);
    m_bus.registerObject(searchPath, &m_search);
    m_bus.registerObject(runnerPath, &m_runner);
}

Automation::~Automation() {
    m_bus.unregisterObject(applicationPath, QDBusConnection::UnregisterTree);
}

void Automation::addSearch() {
    const SearchActions actions{.tell =
                                    [this](const QString &dialog) {
                                        if (m_tell)
                                            m_tell(dialog);
                                    },
                                .show = [this] { m_application->perform({}, [](const auto &) {}); }};
    new SearchProvider(&m_search, m_bus, m_target, m_queue, actions);
    new RunnerService(&m_runner, m_bus, m_queue, actions);
}

void Automation::start(PortStore &store, const ApplicationActions &actions) {
    m_target.store = &store;
    m_tell = actions.tell;
    m_application->start(actions);
}

} // namespace tarnvale
