#include "platform/linux/PrivateBus.h"

#include "support/ManualClock.h"

#include <QDBusMessage>

#include <filesystem>

namespace tarnvale {

namespace {

constexpr const char *program = "/usr/bin/dbus-daemon";

std::string configurationFor(const std::string &address) {
    return "<!DOCTYPE busconfig PUBLIC \"-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN\""
           " \"http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd\">\n"
           "<busconfig><type>session</type><listen>" +
           address +
           "</listen><policy context=\"default\"><allow send_destination=\"*\" eavesdrop=\"true\"/>"
           "<allow eavesdrop=\"true\"/><allow own=\"*\"/></policy></busconfig>\n";
}

} // namespace

PrivateBus::PrivateBus() {
    if (!std::filesystem::exists(program))
        return;
    const std::string file = m_folder.write("bus.conf", configurationFor(address()));
    m_daemon = std::make_unique<TestProcess>(
        std::vector<std::string>{program, "--nofork", "--nopidfile", "--config-file=" + file});
    if (!eventually([this] { return std::filesystem::exists(m_folder.path("bus")); }))
        m_daemon.reset();
}

PrivateBus::~PrivateBus() {
    for (const QString &name : m_names)
        QDBusConnection::disconnectFromBus(name);
}

QDBusConnection PrivateBus::connect() {
    static int made = 0;
    m_names << QStringLiteral("test-%1").arg(++made);
    return QDBusConnection::connectToBus(QString::fromStdString(address()), m_names.last());
}

void PrivateBus::settle() const {
    // Twice: the first answers may lead to new messages.
    for (int round = 0; round < 2; ++round) {
        for (const QString &name : m_names) {
            const QString daemon = QStringLiteral("org.freedesktop.DBus");
            QDBusConnection(name).call(QDBusMessage::createMethodCall(
                daemon, QStringLiteral("/org/freedesktop/DBus"), daemon, QStringLiteral("GetId")));
        }
        tarnvale::settle();
    }
}

} // namespace tarnvale
