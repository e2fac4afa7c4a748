#include "real/RealStore.h"

#include "platform/background.h"
#include "support/ManualClock.h"

#include <algorithm>

namespace tarnvale {

std::string ImpatientTools::run(const ToolRun &run) const {
    ToolRun shorter = run;
    shorter.timeout = std::min(run.timeout, longestRun);
    return SystemTools::run(shorter);
}

RealStore::RealStore(const std::string &shell)
    : launcher({.logsFolder = folder.path("logs"), .shells = {shell}, .bus = QDBusConnection("no bus")}) {}

RealStore::~RealStore() {
    m_store.reset();
    backgroundThreads().waitForDone();
    settle();
}

PortStore &RealStore::store() {
    if (!m_store)
        m_store = std::make_unique<PortStore>(platform());
    return *m_store;
}

Platform RealStore::platform() {
    return {.clock = *clock,
            .machine = machine,
            .processes = processes,
            .settings = settings,
            .notifications = *shownBy,
            .launcher = launcher,
            .tools = tools,
            .desktop = desktop,
            .clipboard = clipboard,
            .loginItem = loginItem,
            .previewCapturer = previewCapturer};
}

std::optional<ListeningPort> RealStore::record(std::int64_t port) {
    if (!finish(store().refresh()))
        return std::nullopt;
    const auto &ports = store().ports();
    const auto found =
        std::find_if(ports.begin(), ports.end(), [&](const ListeningPort &row) { return row.port == port; });
    return found == ports.end() ? std::nullopt : std::optional(*found);
}

bool RealStore::finish(QCoro::Task<> flow, std::chrono::milliseconds timeout) {
    return waitFor([&] { return flow.isReady(); }, timeout);
}

std::string RealStore::error() const {
    return m_store ? m_store->error().value_or(QString()).toStdString() : std::string();
}

} // namespace tarnvale
