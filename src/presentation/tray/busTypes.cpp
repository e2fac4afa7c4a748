#include "presentation/tray/busTypes.h"

#include <QDBusMetaType>
#include <QDBusVariant>
#include <QtEndian>

namespace tarnvale {

namespace {

/// Writes or reads the fields of a structure in order.
template<typename... Fields> QDBusArgument &writeAll(QDBusArgument &argument, const Fields &...fields) {
    argument.beginStructure();
    (argument << ... << fields);
    argument.endStructure();
    return argument;
}

template<typename... Fields> const QDBusArgument &readAll(const QDBusArgument &argument, Fields &...fields) {
    argument.beginStructure();
    (argument >> ... >> fields);
    argument.endStructure();
    return argument;
}

} // namespace

QDBusArgument &operator<<(QDBusArgument &argument, const TrayPixmap &value) {
    return writeAll(argument, value.width, value.height, value.bytes);
}

const QDBusArgument &operator>>(const QDBusArgument &argument, TrayPixmap &value) {
    return readAll(argument, value.width, value.height, value.bytes);
}

QDBusArgument &operator<<(QDBusArgument &argument, const TrayToolTip &value) {
    return writeAll(argument, value.iconName, value.pixmaps, value.title, value.text);
}

const QDBusArgument &operator>>(const QDBusArgument &argument, TrayToolTip &value) {
    return readAll(argument, value.iconName, value.pixmaps, value.title, value.text);
}

QDBusArgument &operator<<(QDBusArgument &argument, const MenuItemProperties &value) {
    return writeAll(argument, value.id, value.properties);
}

const QDBusArgument &operator>>(const QDBusArgument &argument, MenuItemProperties &value) {
    return readAll(argument, value.id, value.properties);
}

QDBusArgument &operator<<(QDBusArgument &argument, const MenuItemNames &value) {
    return writeAll(argument, value.id, value.names);
}

const QDBusArgument &operator>>(const QDBusArgument &argument, MenuItemNames &value) {
    return readAll(argument, value.id, value.names);
}

QDBusArgument &operator<<(QDBusArgument &argument, const MenuEvent &value) {
    return writeAll(argument, value.id, value.name, QDBusVariant(value.data), value.time);
}

const QDBusArgument &operator>>(const QDBusArgument &argument, MenuEvent &value) {
    QDBusVariant data;
    readAll(argument, value.id, value.name, data, value.time);
    value.data = data.variant();
    return argument;
}

/// Each child is a variant that holds a layout.
QDBusArgument &operator<<(QDBusArgument &argument, const MenuLayout &value) {
    argument.beginStructure();
    argument << value.id << value.properties;
    argument.beginArray(QMetaType::fromType<QDBusVariant>());
    for (const MenuLayout &child : value.children)
        argument << QDBusVariant(QVariant::fromValue(child));
    argument.endArray();
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, MenuLayout &value) {
    argument.beginStructure();
    argument >> value.id >> value.properties;
    argument.beginArray();
    value.children.clear();
    while (!argument.atEnd()) {
        QDBusVariant child;
        argument >> child;
        value.children.append(qdbus_cast<MenuLayout>(child.variant()));
    }
    argument.endArray();
    argument.endStructure();
    return argument;
}

void registerBusTypes() {
    qDBusRegisterMetaType<TrayPixmap>();
    qDBusRegisterMetaType<QList<TrayPixmap>>();
    qDBusRegisterMetaType<TrayToolTip>();
    qDBusRegisterMetaType<MenuLayout>();
    qDBusRegisterMetaType<MenuItemProperties>();
    qDBusRegisterMetaType<QList<MenuItemProperties>>();
    qDBusRegisterMetaType<MenuItemNames>();
    qDBusRegisterMetaType<QList<MenuItemNames>>();
    qDBusRegisterMetaType<MenuEvent>();
    qDBusRegisterMetaType<QList<MenuEvent>>();
    qDBusRegisterMetaType<QList<int>>();
}

TrayPixmap trayPixmap(const QImage &image) {
    const QImage plain = image.convertToFormat(QImage::Format_ARGB32);
    TrayPixmap pixmap{plain.width(), plain.height(), {}};
    constexpr qsizetype bytesPerPixel = 4;
    const qsizetype bytesPerRow = plain.width() * bytesPerPixel;
    pixmap.bytes.resize(plain.height() * bytesPerRow);
    for (int y = 0; y < plain.height(); ++y)
        qToBigEndian<quint32>(plain.constScanLine(y), plain.width(), pixmap.bytes.data() + y * bytesPerRow);
    return pixmap;
}

} // namespace tarnvale
