#pragma once

#include <QByteArray>
#include <QDBusArgument>
#include <QImage>
#include <QList>
#include <QString>
#include <QVariantMap>

namespace tarnvale {

/// One picture on the bus, signature (iiay): ARGB32 in network byte order, not premultiplied.
struct TrayPixmap {
    int width = 0;
    int height = 0;
    QByteArray bytes;
    bool operator==(const TrayPixmap &) const = default;
};

/// Signature (sa(iiay)ss).
struct TrayToolTip {
    QString iconName;
    QList<TrayPixmap> pixmaps;
    QString title;
    QString text; ///< hosts may take it for markup
    bool operator==(const TrayToolTip &) const = default;
};

/// An item of a menu with those below it, signature (ia{sv}av).
struct MenuLayout {
    int id = 0;
    QVariantMap properties;
    QList<MenuLayout> children;
};

/// Properties of one item, signature (ia{sv}).
struct MenuItemProperties {
    int id = 0;
    QVariantMap properties;
};

/// Properties of one item that are back at their defaults, signature (ias).
struct MenuItemNames {
    int id = 0;
    QStringList names;
};

/// What an item of a menu met, signature (isvu).
struct MenuEvent {
    int id = 0;
    QString name;
    QVariant data;
    uint time = 0;
};

// How they are written to messages and read from them.
QDBusArgument &operator<<(QDBusArgument &argument, const TrayPixmap &value);
const QDBusArgument &operator>>(const QDBusArgument &argument, TrayPixmap &value);
QDBusArgument &operator<<(QDBusArgument &argument, const TrayToolTip &value);
const QDBusArgument &operator>>(const QDBusArgument &argument, TrayToolTip &value);
QDBusArgument &operator<<(QDBusArgument &argument, const MenuLayout &value);
const QDBusArgument &operator>>(const QDBusArgument &argument, MenuLayout &value);
QDBusArgument &operator<<(QDBusArgument &argument, const MenuItemProperties &value);
const QDBusArgument &operator>>(const QDBusArgument &argument, MenuItemProperties &value);
QDBusArgument &operator<<(QDBusArgument &argument, const MenuItemNames &value);
const QDBusArgument &operator>>(const QDBusArgument &argument, MenuItemNames &value);
QDBusArgument &operator<<(QDBusArgument &argument, const MenuEvent &value);
const QDBusArgument &operator>>(const QDBusArgument &argument, MenuEvent &value);

/// Teaches Qt DBus all of these; once is enough, more does no harm.
void registerBusTypes();

[[nodiscard]] TrayPixmap trayPixmap(const QImage &image);

} // namespace tarnvale

Q_DECLARE_METATYPE(tarnvale::TrayPixmap)
Q_DECLARE_METATYPE(tarnvale::TrayToolTip)
Q_DECLARE_METATYPE(tarnvale::MenuLayout)
Q_DECLARE_METATYPE(tarnvale::MenuItemProperties)
Q_DECLARE_METATYPE(tarnvale::MenuItemNames)
Q_DECLARE_METATYPE(tarnvale::MenuEvent)
