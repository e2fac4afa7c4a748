#pragma once

#include "presentation/tray/DBusMenu.h"
#include "presentation/tray/busTypes.h"

#include <QDBusAbstractAdaptor>
#include <QDBusObjectPath>

namespace tarnvale {

class StatusNotifierItem;

/// What of a `StatusNotifierItem` can be seen on the bus. All names are the protocol's
/// (freedesktop.org, StatusNotifierItem; IconAccessibleDesc is an addition of the Ayatana project).
class StatusNotifierAdaptor : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierItem")
    Q_PROPERTY(QString Category READ category CONSTANT)
    Q_PROPERTY(QString Id READ id CONSTANT)
    Q_PROPERTY(QString Title READ title CONSTANT)
    Q_PROPERTY(QString Status READ status CONSTANT)
    Q_PROPERTY(int WindowId READ windowId CONSTANT)
    Q_PROPERTY(QString IconName READ iconName)
    Q_PROPERTY(QString IconThemePath READ iconThemePath CONSTANT)
    Q_PROPERTY(QList<tarnvale::TrayPixmap> IconPixmap READ iconPixmap)
    Q_PROPERTY(QString IconAccessibleDesc READ iconAccessibleDesc)
    Q_PROPERTY(QString OverlayIconName READ noIcon CONSTANT)
    Q_PROPERTY(QString AttentionIconName READ noIcon CONSTANT)
    Q_PROPERTY(tarnvale::TrayToolTip ToolTip READ toolTip)
    Q_PROPERTY(QDBusObjectPath Menu READ menu CONSTANT)
    Q_PROPERTY(bool ItemIsMenu READ isMenu CONSTANT)
public:
    explicit StatusNotifierAdaptor(StatusNotifierItem &item);

    [[nodiscard]] QString category() const { return QStringLiteral("ApplicationStatus"); }
    [[nodiscard]] QString id() const { return QStringLiteral("dev.tarnvale.Tarnvale"); }
    [[nodiscard]] QString title() const { return QStringLiteral("Tarnvale"); }
    [[nodiscard]] QString status() const { return QStringLiteral("Active"); }
    [[nodiscard]] int windowId() const { return 0; }
    [[nodiscard]] QString iconName() const;
    [[nodiscard]] QString iconThemePath() const { return {}; }
    [[nodiscard]] QList<TrayPixmap> iconPixmap() const;
    [[nodiscard]] QString iconAccessibleDesc() const;
    [[nodiscard]] QString noIcon() const { return {}; }
    [[nodiscard]] TrayToolTip toolTip() const;
    [[nodiscard]] QDBusObjectPath menu() const { return QDBusObjectPath(DBusMenu::path); }
    /// Some hosts take a missing answer for a yes.
    [[nodiscard]] bool isMenu() const { return false; }

public Q_SLOTS:
    void Activate(int x, int y);
    void SecondaryActivate(int x, int y);
    void ContextMenu(int x, int y);
    void Scroll(int delta, const QString &orientation);
    void ProvideXdgActivationToken(const QString &token);

Q_SIGNALS:
    void NewTitle();
    void NewIcon();
    void NewToolTip();
    void NewStatus(const QString &status);

private:
    StatusNotifierItem &m_item;
};

} // namespace tarnvale
