#include "presentation/tray/StatusNotifierItem.h"

#include "presentation/tray/StatusNotifierAdaptor.h"

namespace tarnvale {

StatusNotifierItem::StatusNotifierItem(const QDBusConnection &bus, QObject *parent)
    : QObject(parent), m_bus(bus) {
    registerBusTypes();
    new StatusNotifierAdaptor(*this);
    m_bus.registerObject(QString::fromLatin1(path), this, QDBusConnection::ExportAdaptors);
}

StatusNotifierItem::~StatusNotifierItem() {
    m_bus.unregisterObject(QString::fromLatin1(path));
}

void StatusNotifierItem::setLook(const TrayLook &look) {
    const TrayLook before = std::exchange(m_look, look);
    if (before.iconName != look.iconName || before.pixmaps != look.pixmaps ||
        before.accessibleText != look.accessibleText)
        Q_EMIT iconChanged();
    if (before.toolTip != look.toolTip)
        Q_EMIT toolTipChanged();
}

std::optional<QPoint> StatusNotifierItem::placeOf(int x, int y) {
    return x == 0 && y == 0 ? std::nullopt : std::optional(QPoint(x, y));
}

/// A token is a short word; what is longer is none.
void StatusNotifierItem::setActivationToken(const QString &token) {
    constexpr qsizetype longest = 1000;
    m_token = token.size() <= longest ? token : QString();
}

} // namespace tarnvale
