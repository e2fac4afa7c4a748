#include "presentation/pages/StacksController.h"

#include "discovery/findTool.h"
#include "store/PortStore.h"

#include <QPointer>
#include <QUuid>

#include <utility>

namespace tarnvale {

StacksController::StacksController(PortStore &store, const Platform &platform, FolderChooser chooser,
                                   FolderReader reader)
    : m_store(store),
      m_chooser(std::move(chooser)),
      m_newStack(store, platform, std::move(reader)),
      m_deletions(platform.clock, confirmedWithin, MomentaryKeys::Capacity::any),
      m_starter(store),
      m_updates(platform.clock, [this] { update(); }) {
    m_updates.follow(store, {&PortStore::portsChanged, &PortStore::stacksChanged});
    connect(&m_deletions, &MomentaryKeys::changed, this, &StacksController::update);
}

void StacksController::setShown(bool isShown) {
    if (!isShown)
        m_deletions.clear();
    m_updates.setShown(isShown);
}

void StacksController::update() {
    const int before = stackCount();
    const std::set<Stack::Command> running = runningCommands(m_store.ports());
    const std::string home = homeFolder();
    std::vector<StackCardRow> rows;
    for (const Stack &stack : m_store.stacks()) {
        rows.push_back(stackCardRow(stack, running, home));
        rows.back().isArmed = m_deletions.contains(rows.back().id);
    }
    m_stacks.setRows(std::move(rows));
    if (before != stackCount())
        Q_EMIT stackCountChanged();
}

void StacksController::newFromFolder() {
    if (std::exchange(m_isChoosing, true))
        return;
    m_chooser([self = QPointer(this)](const std::optional<std::string> &folder) {
        if (!self)
            return;
        self->m_isChoosing = false;
        if (folder)
            self->m_newStack.open(*folder);
    });
}

void StacksController::startStack(const QString &stackId) {
    m_starter.start(stackId);
}

void StacksController::deleteInTwoSteps(const QString &stackId) {
    if (m_deletions.confirm(stackId))
        m_store.deleteStack(QUuid(stackId));
}

} // namespace tarnvale
