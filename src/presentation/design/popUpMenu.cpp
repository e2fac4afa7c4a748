#include "presentation/design/popUpMenu.h"

#include "presentation/design/ToolTips.h"
#include "presentation/design/isComposited.h"
#include "presentation/design/registerDesign.h"

#include <QApplication>
#include <QMenu>
#include <QQuickItem>
#include <QQuickWindow>
#include <QScreen>
#include <QWindow>

#include <algorithm>

namespace tarnvale {

namespace {

QString cssColor(const char *name) {
    return themeColor(name).name(QColor::HexArgb);
}

QString styleSheet(bool isRounded) {
    return QStringLiteral(
               "QMenu { background: %1; color: %2; border: 1px solid %3; border-radius: %7px; padding: 5px; }"
               "QMenu::item { padding: 4px 18px 4px 10px; border-radius: 5px; }"
               "QMenu::item:selected { background: %4; color: %5; }"
               "QMenu::item:disabled { color: %6; background: transparent; }"
               "QMenu::separator { height: 1px; background: %3; margin: 5px 9px; }"
               "QMenu::indicator { width: 12px; height: 12px; left: 6px; }")
        .arg(themeColor("surfaceRaised").name(), cssColor("ink"), themeColor("tipStroke").name(),
             cssColor("accent"), cssColor("inkOn"), cssColor("inkTertiary"))
        .arg(isRounded ? 8 : 0);
}

void decorate(QMenu &menu) {
    const bool isRounded = isComposited();
    menu.setWindowFlag(Qt::FramelessWindowHint);
    menu.setWindowFlag(Qt::NoDropShadowWindowHint, isRounded);
    menu.setAttribute(Qt::WA_TranslucentBackground, isRounded);
    menu.setStyleSheet(styleSheet(isRounded));
}

/// A title as it stands: "&" would mark a key to press.
QString menuTitle(const MenuEntry &entry) {
    constexpr qsizetype longest = 200;
    QString title =
        entry.title.size() > longest ? entry.title.left(longest - 1) + QChar(0x2026) : entry.title;
    title.replace(QLatin1Char('&'), QStringLiteral("&&")).replace(QLatin1Char('\t'), QLatin1Char(' '));
    return entry.shortcut.isEmpty() ? title : title + QLatin1Char('\t') + entry.shortcut;
}

void fill(QMenu &menu, const std::vector<MenuEntry> &entries);

void add(QMenu &menu, const MenuEntry &entry) {
    if (entry.isDivider()) {
        menu.addSeparator();
        return;
    }
    if (!entry.children.empty()) {
        QMenu *submenu = menu.addMenu(menuTitle(entry));
        decorate(*submenu);
        fill(*submenu, entry.children);
        submenu->setEnabled(entry.isEnabled);
        return;
    }
    QAction *action = menu.addAction(menuTitle(entry));
    action->setEnabled(entry.isEnabled);
    action->setCheckable(entry.isChecked.has_value());
    action->setChecked(entry.isChecked.value_or(false));
    if (entry.act) {
        // Queued, and owned by the application: the menu is gone by then, and may be so before.
        QObject::connect(action, &QAction::triggered, qApp, entry.act, Qt::QueuedConnection);
    }
}

void fill(QMenu &menu, const std::vector<MenuEntry> &entries) {
    for (const MenuEntry &entry : entries)
        add(menu, entry);
}

int openMenus = 0;

QMenu *makeMenu(const std::vector<MenuEntry> &entries, QWindow *owner) {
    auto *menu = new QMenu;
    decorate(*menu);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    fill(*menu, entries);
    menu->winId();
    menu->windowHandle()->setTransientParent(owner);
    ++openMenus;
    QObject::connect(menu, &QObject::destroyed, qApp, [] { --openMenus; });
    if (owner != nullptr)
        QObject::connect(owner, &QObject::destroyed, menu, &QObject::deleteLater);
    ToolTips::instance().hide();
    return menu;
}

/// Where a menu of this size goes: beneath the item, or above where there is no room; never past the sides.
QPoint beside(const QQuickItem &item, const QSize &menu) {
    constexpr int distance = 2;
    const QRect room = item.window()->screen()->availableGeometry();
    const QPoint top = item.mapToGlobal(QPointF(0, 0)).toPoint();
    const QPoint bottom = item.mapToGlobal(QPointF(0, item.height())).toPoint();
    const bool fits = bottom.y() + distance + menu.height() <= room.bottom();
    const int left = std::max(room.left(), std::min(bottom.x(), room.right() - menu.width()));
    return {left, fits ? bottom.y() + distance : top.y() - distance - menu.height()};
}

} // namespace

QMenu *popUpMenu(const std::vector<MenuEntry> &entries, const QPoint &globalPosition, QWindow *owner) {
    if (entries.empty())
        return nullptr;
    QMenu *menu = makeMenu(entries, owner);
    menu->popup(globalPosition);
    return menu;
}

QMenu *popUpMenu(const std::vector<MenuEntry> &entries, QQuickItem *item) {
    if (entries.empty() || item == nullptr || item->window() == nullptr)
        return nullptr;
    QMenu *menu = makeMenu(entries, item->window());
    menu->popup(beside(*item, menu->sizeHint()));
    return menu;
}

bool isMenuOpen() {
    return openMenus > 0;
}

} // namespace tarnvale
