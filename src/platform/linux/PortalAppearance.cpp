#include "platform/linux/PortalAppearance.h"

#include <QDBusArgument>
#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>
#include <QStringList>

namespace tarnvale {

namespace {

const QString service = QStringLiteral("org.freedesktop.portal.Desktop");
const QString portalObject = QStringLiteral("/org/freedesktop/portal/desktop");
const QString interface = QStringLiteral("org.freedesktop.portal.Settings");

const QString freedesktop = QStringLiteral("org.freedesktop.appearance");
const QString gnome = QStringLiteral("org.gnome.desktop.interface");
const QString gnomeAccess = QStringLiteral("org.gnome.desktop.a11y.interface");
const QString kdeGeneral = QStringLiteral("org.kde.kdeglobals.General");
const QString kdeMotion = QStringLiteral("org.kde.kdeglobals.KDE");

/// Some portals wrap a value twice; nobody has reason to do so more often.
QVariant unwrapped(QVariant value) {
    constexpr int deepest = 4;
    for (int i = 0; i < deepest && value.metaType() == QMetaType::fromType<QDBusVariant>(); ++i)
        value = value.value<QDBusVariant>().variant();
    return value;
}

std::optional<std::uint32_t> number(const QVariant &value) {
    bool isNumber = false;
    const uint result = value.toUInt(&isNumber);
    return isNumber ? std::optional(result) : std::nullopt;
}

/// KDE's portal gives texts for everything.
std::optional<double> real(const QVariant &value) {
    bool isNumber = false;
    const double result = value.toDouble(&isNumber);
    return isNumber ? std::optional(result) : std::nullopt;
}

std::optional<bool> truth(const QVariant &value) {
    return value.metaType().id() == QMetaType::Bool ? std::optional(value.toBool()) : std::nullopt;
}

std::optional<std::string> text(const QVariant &value) {
    return value.metaType().id() == QMetaType::QString ? std::optional(value.toString().toStdString())
                                                       : std::nullopt;
}

std::optional<std::array<double, 3>> color(const QVariant &value) {
    if (value.metaType() != QMetaType::fromType<QDBusArgument>())
        return std::nullopt;
    const auto argument = value.value<QDBusArgument>();
    if (argument.currentSignature() != QStringLiteral("(ddd)"))
        return std::nullopt;
    std::array<double, 3> result{};
    argument.beginStructure();
    argument >> result[0] >> result[1] >> result[2];
    argument.endStructure();
    return result;
}

void take(AppearanceValues &values, const QString &space, const QString &key, const QVariant &wrapped) {
    const QVariant value = unwrapped(wrapped);
    const auto is = [&](const QString &wantedSpace, const char *wantedKey) {
        return space == wantedSpace && key == QLatin1String(wantedKey);
    };
    if (is(freedesktop, "color-scheme"))
        values.colorScheme = number(value);
    else if (is(freedesktop, "contrast"))
        values.contrast = number(value);
    else if (is(freedesktop, "reduced-motion"))
        values.reducedMotion = number(value);
    else if (is(freedesktop, "accent-color"))
        values.accentColor = color(value);
    else if (is(gnome, "enable-animations"))
        values.enableAnimations = truth(value);
    else if (is(gnome, "text-scaling-factor"))
        values.textScalingFactor = real(value);
    else if (is(gnome, "font-name"))
        values.gnomeFont = text(value);
    else if (is(gnomeAccess, "high-contrast"))
        values.gnomeHighContrast = truth(value);
    else if (is(kdeMotion, "AnimationDurationFactor"))
        values.animationDurationFactor = real(value);
    else if (is(kdeGeneral, "AccentColor"))
        values.kdeAccent = text(value);
    else if (is(kdeGeneral, "font"))
        values.kdeFont = text(value);
}

} // namespace

AppearanceReader::AppearanceReader(const QDBusConnection &bus) : m_bus(bus) {
    auto *watcher = new QDBusServiceWatcher(service, m_bus, QDBusServiceWatcher::WatchForOwnerChange, this);
    connect(watcher, &QDBusServiceWatcher::serviceOwnerChanged, this, &AppearanceReader::onOwnerChanged);
    qRegisterMetaType<QDBusVariant>(); // before the first connection with one, or Qt refuses it
    // No sender is named here: Qt would ask the bus for its owner and wait. The slot checks it instead.
    m_bus.connect(QString(), portalObject, interface, QStringLiteral("SettingChanged"), this,
                  SLOT(onSettingChanged(QString, QString, QDBusVariant, QDBusMessage)));
    ask();
}

void AppearanceReader::onOwnerChanged(const QString &, const QString &, const QString &after) {
    if (!after.isEmpty() && after != m_portal)
        ask();
}

void AppearanceReader::onSettingChanged(const QString &space, const QString &key, const QDBusVariant &value,
                                        const QDBusMessage &message) {
    if (m_portal.isEmpty() || message.service() != m_portal)
        return;
    AppearanceValues values = m_values;
    take(values, space, key, value.variant());
    setValues(values);
}

void AppearanceReader::ask() {
    if (!m_bus.isConnected())
        return;
    QDBusMessage call =
        QDBusMessage::createMethodCall(service, portalObject, interface, QStringLiteral("ReadAll"));
    call.setArguments({QStringList{freedesktop, gnome, gnomeAccess, kdeGeneral, kdeMotion}});
    auto *watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, question = ++m_question] {
        watcher->deleteLater();
        if (question == m_question)
            takeAll(watcher->reply());
    });
}

void AppearanceReader::takeAll(const QDBusMessage &reply) {
    if (reply.type() != QDBusMessage::ReplyMessage || reply.signature() != QStringLiteral("a{sa{sv}}"))
        return;
    m_portal = reply.service();
    const auto spaces = qdbus_cast<QMap<QString, QVariantMap>>(reply.arguments().constFirst());
    AppearanceValues values;
    for (auto space = spaces.begin(); space != spaces.end(); ++space) {
        for (auto setting = space->begin(); setting != space->end(); ++setting)
            take(values, space.key(), setting.key(), setting.value());
    }
    setValues(values);
}

void AppearanceReader::setValues(const AppearanceValues &values) {
    m_values = values;
    const DesktopAppearance appearance = resolveAppearance(values);
    if (appearance == m_appearance)
        return;
    m_appearance = appearance;
    Q_EMIT changed();
}

} // namespace tarnvale
