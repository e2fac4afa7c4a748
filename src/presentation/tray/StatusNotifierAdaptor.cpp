#include "presentation/tray/StatusNotifierAdaptor.h"

#include "presentation/tray/StatusNotifierItem.h"

namespace tarnvale {

StatusNotifierAdaptor::StatusNotifierAdaptor(StatusNotifierItem &item)
    : QDBusAbstractAdaptor(&item), m_item(item) {
    connect(&item, &StatusNotifierItem::iconChanged, this, &StatusNotifierAdaptor::NewIcon);
    connect(&item, &StatusNotifierItem::toolTipChanged, this, &StatusNotifierAdaptor::NewToolTip);
}

QString StatusNotifierAdaptor::iconName() const {
    return m_item.look().iconName;
}

QList<TrayPixmap> StatusNotifierAdaptor::iconPixmap() const {
    return m_item.look().pixmaps;
}

QString StatusNotifierAdaptor::iconAccessibleDesc() const {
    return m_item.look().accessibleText;
}

TrayToolTip StatusNotifierAdaptor::toolTip() const {
    return {{}, {}, m_item.look().toolTip, {}};
}

void StatusNotifierAdaptor::Activate(int x, int y) {
    Q_EMIT m_item.activated(StatusNotifierItem::placeOf(x, y));
}

void StatusNotifierAdaptor::SecondaryActivate(int x, int y) {
    Q_EMIT m_item.secondaryActivated(StatusNotifierItem::placeOf(x, y));
}

void StatusNotifierAdaptor::ContextMenu(int x, int y) {
    Q_EMIT m_item.menuRequested(StatusNotifierItem::placeOf(x, y));
}

/// Nothing to scroll through; hosts that send it get an answer.
void StatusNotifierAdaptor::Scroll(int, const QString &) {}

void StatusNotifierAdaptor::ProvideXdgActivationToken(const QString &token) {
    m_item.setActivationToken(token);
}

} // namespace tarnvale
