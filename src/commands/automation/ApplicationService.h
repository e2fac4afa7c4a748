#pragma once

#include "commands/automation/ApplicationRequest.h"

#include <QDBusAbstractAdaptor>
#include <QDBusConnection>
#include <QDBusError>
#include <QDBusMessage>
#include <QStringList>

#include <deque>
#include <expected>
#include <functional>

namespace tarnvale {

class ShortcutQueue;

/// What the application does when it is asked. Each may be left out; it is then not offered.
struct ApplicationActions {
    std::function<void(const QString &activationToken)> activate;
    std::function<void(const QString &activationToken)> togglePanel;
    std::function<void(const QString &activationToken)> showWindow;
    std::function<void(const QString &dialog)> tell; ///< shows what came of a shortcut
    std::function<void()> quit;
};

/// The application as the desktop talks to it: `org.freedesktop.Application` (freedesktop.org, Desktop Entry
/// 1.5), with the actions "toggle-panel", "show-window", "list", "free-port", "open-port" and
/// "quit". The port of two of them is a number or its text. Main thread.
class ApplicationService : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")
    Q_CLASSINFO("D-Bus Introspection", "  <interface name=\"org.freedesktop.Application\">\n"
                                       "    <method name=\"Activate\">\n"
                                       "      <arg name=\"platform_data\" type=\"a{sv}\" direction=\"in\"/>\n"
                                       "    </method>\n"
                                       "    <method name=\"Open\">\n"
                                       "      <arg name=\"uris\" type=\"as\" direction=\"in\"/>\n"
                                       "      <arg name=\"platform_data\" type=\"a{sv}\" direction=\"in\"/>\n"
                                       "    </method>\n"
                                       "    <method name=\"ActivateAction\">\n"
                                       "      <arg name=\"action_name\" type=\"s\" direction=\"in\"/>\n"
                                       "      <arg name=\"parameter\" type=\"av\" direction=\"in\"/>\n"
                                       "      <arg name=\"platform_data\" type=\"a{sv}\" direction=\"in\"/>\n"
                                       "    </method>\n"
                                       "  </interface>\n")
public:
    struct Refusal {
        QDBusError::ErrorType type = QDBusError::Failed;
        QString text;
    };
    using Outcome = std::expected<void, Refusal>;
    using Answer = std::function<void(const Outcome &)>;

    /// Adds the interface to `object`; `queue` outlives it.
    ApplicationService(QObject *object, const QDBusConnection &bus, ShortcutQueue &queue);

    /// The application has started: what was asked until now is done, and whatever follows at once.
    void start(ApplicationActions actions);

    /// Does it, after the start of the application, and answers when it is done or begun.
    void perform(const ApplicationRequest &request, const Answer &answer);

    /// How many requests wait for the start; more are refused.
    static constexpr std::size_t mostWaiting = 64;

public Q_SLOTS:
    void Activate(const QVariantMap &platformData, const QDBusMessage &call);
    /// There are no files to open: the application shows itself.
    void Open(const QStringList &uris, const QVariantMap &platformData, const QDBusMessage &call);
    void ActivateAction(const QString &action, const QVariantList &parameters,
                        const QVariantMap &platformData, const QDBusMessage &call);

private:
    struct Waiting {
        ApplicationRequest request;
        Answer answer;
    };

    void take(const ApplicationRequest &request, const QDBusMessage &call);
    [[nodiscard]] Outcome performNow(const ApplicationRequest &request);
    [[nodiscard]] Outcome performPlain(const ApplicationRequest &request);
    [[nodiscard]] Outcome performWithPort(const ApplicationRequest &request);
    void tell(const QString &dialog) const;

    QDBusConnection m_bus;
    ShortcutQueue &m_queue;
    ApplicationActions m_actions;
    bool m_isStarted = false;
    std::deque<Waiting> m_waiting;
};

} // namespace tarnvale
