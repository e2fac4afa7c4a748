#include "platform/linux/LaunchScope.h"

#include "discovery/text.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>

#include <algorithm>

namespace tarnvale {

// The argument types a(sv) and a(sa(sv)) of StartTransientUnit.

struct UnitProperty {
    QString name;
    QDBusVariant value;
};

struct AuxiliaryUnit {
    QString name;
    QList<UnitProperty> properties;
};

static QDBusArgument &operator<<(QDBusArgument &argument, const UnitProperty &property) {
    argument.beginStructure();
    argument << property.name << property.value;
    argument.endStructure();
    return argument;
}

static const QDBusArgument &operator>>(const QDBusArgument &argument, UnitProperty &property) {
    argument.beginStructure();
    argument >> property.name >> property.value;
    argument.endStructure();
    return argument;
}

static QDBusArgument &operator<<(QDBusArgument &argument, const AuxiliaryUnit &unit) {
    argument.beginStructure();
    argument << unit.name << unit.properties;
    argument.endStructure();
    return argument;
}

static const QDBusArgument &operator>>(const QDBusArgument &argument, AuxiliaryUnit &unit) {
    argument.beginStructure();
    argument >> unit.name >> unit.properties;
    argument.endStructure();
    return argument;
}

} // namespace tarnvale

Q_DECLARE_METATYPE(tarnvale::UnitProperty)
Q_DECLARE_METATYPE(tarnvale::AuxiliaryUnit)

namespace tarnvale {

namespace {

const QString service = QStringLiteral("org.freedesktop.systemd1");
const QString object = QStringLiteral("/org/freedesktop/systemd1");
const QString interface = QStringLiteral("org.freedesktop.systemd1.Manager");

/// Commands outlive this program and their scopes with them, so a mere count would meet old ones.
QString nextUnit() {
    static std::int64_t last = 0;
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    last =
        std::max<std::int64_t>(last + 1, std::chrono::duration_cast<std::chrono::milliseconds>(now).count());
    return QStringLiteral("tarnvale-launch-%1.scope").arg(last);
}

UnitProperty unitProperty(const char *name, const QVariant &value) {
    return {QString::fromLatin1(name), QDBusVariant(value)};
}

QDBusMessage startTransientUnit(const QString &unit, const QList<UnitProperty> &properties) {
    qDBusRegisterMetaType<UnitProperty>();
    qDBusRegisterMetaType<QList<UnitProperty>>();
    qDBusRegisterMetaType<AuxiliaryUnit>();
    qDBusRegisterMetaType<QList<AuxiliaryUnit>>();
    QDBusMessage call =
        QDBusMessage::createMethodCall(service, object, interface, QStringLiteral("StartTransientUnit"));
    call.setAutoStartService(false);
    call << unit << QStringLiteral("fail") << QVariant::fromValue(properties)
         << QVariant::fromValue(QList<AuxiliaryUnit>());
    return call;
}

QString shortened(const std::string &description) {
    constexpr std::size_t mostCharacters = 200;
    return QString::fromStdString(std::string(firstCharacters(printable(description), mostCharacters)));
}

} // namespace

LaunchScope::LaunchScope(QDBusConnection bus, Request request, QObject *parent)
    : QObject(parent),
      m_bus(std::move(bus)),
      m_pid(request.pid),
      m_gate(std::move(request.gate)),
      m_unit(nextUnit()) {
    qDBusRegisterMetaType<QDBusObjectPath>(); // else a program's first connection to such a signal is refused
    // No sender is named: Qt would ask the bus for its owner and wait. The unit's name tells enough.
    m_bus.connect(QString(), object, interface, QStringLiteral("JobRemoved"), this,
                  SLOT(onJobRemoved(uint, QDBusObjectPath, QString, QString)));
    connect(&m_limit, &QTimer::timeout, this, &LaunchScope::settle);
    m_limit.setSingleShot(true);
    m_limit.start(request.limit);
    ask(request.description);
}

/// The manager's answer says only that there is a job; the process moves when that has run.
void LaunchScope::ask(const std::string &description) {
    const QList<UnitProperty> properties{
        unitProperty("PIDs", QVariant::fromValue(QList<uint>{static_cast<uint>(m_pid)})),
        unitProperty("Description", shortened(description)),
        unitProperty("CollectMode", QStringLiteral("inactive-or-failed"))};
    auto *watcher =
        new QDBusPendingCallWatcher(m_bus.asyncCall(startTransientUnit(m_unit, properties)), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        if (watcher->isError())
            settle();
    });
}

void LaunchScope::onJobRemoved(uint, const QDBusObjectPath &, const QString &unit, const QString &) {
    if (unit == m_unit)
        settle();
}

void LaunchScope::settle() {
    m_gate.reset();
    deleteLater();
}

} // namespace tarnvale
