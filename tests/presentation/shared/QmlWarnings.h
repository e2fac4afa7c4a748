#pragma once

#include <QStringList>

#include <mutex>
#include <string>

namespace tarnvale {

/// Collects what Qt and QML warn of, from any thread, while it lives; it's written as ever besides. Where
/// there are several, the youngest collects, and they go in the reverse order of their coming.
class QmlWarnings {
public:
    QmlWarnings();
    QmlWarnings(const QmlWarnings &) = delete;
    QmlWarnings &operator=(const QmlWarnings &) = delete;
    ~QmlWarnings();

    /// One that Qt keeps to itself.
    void add(const QString &message);

    /// What went wrong so far, one a line; empty when all is well.
    [[nodiscard]] std::string text() const;
    /// The same, which is forgotten then: it was to be expected.
    [[nodiscard]] std::string take();

private:
    static void note(QtMsgType type, const QMessageLogContext &context, const QString &message);

    mutable std::mutex m_mutex;
    QStringList m_messages;
    QmlWarnings *m_outer;
    QtMessageHandler m_earlier;
};

} // namespace tarnvale
