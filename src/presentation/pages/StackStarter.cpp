#include "presentation/pages/StackStarter.h"

#include "store/PortStore.h"

#include <QPointer>

#include <algorithm>

namespace tarnvale {

namespace {

template<typename Act>
QCoro::Task<> startThen(PortStore &store, Stack stack, QPointer<QObject> owner, Act act) {
    const QCoro::Task<> flow = store.startStack(std::move(stack));
    co_await flow;
    if (owner)
        act();
}

} // namespace

void StackStarter::start(const QString &stackId) {
    const QUuid id(stackId);
    const auto &stacks = m_store.stacks();
    const auto found =
        std::find_if(stacks.begin(), stacks.end(), [&](const Stack &stack) { return stack.id == id; });
    if (found == stacks.end() || !m_underWay.insert(stackId).second)
        return;
    startThen(m_store, *found, this, [this, stackId] { m_underWay.erase(stackId); });
}

} // namespace tarnvale
