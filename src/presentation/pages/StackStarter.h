#pragma once

#include <QObject>
#include <QString>

#include <set>

namespace tarnvale {

class PortStore;

/// Starts stacks, each once at a time: a second press while the commands still come up would start them
/// twice. Main thread.
class StackStarter : public QObject {
public:
    /// `store` outlives this object.
    explicit StackStarter(PortStore &store) : m_store(store) {}

    /// Starts what of the stack doesn't run, unless there is no stack of that id.
    void start(const QString &stackId);

private:
    PortStore &m_store;
    std::set<QString> m_underWay;
};

} // namespace tarnvale
