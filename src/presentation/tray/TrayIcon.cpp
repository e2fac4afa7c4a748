#include "presentation/tray/TrayIcon.h"

#include "presentation/tray/trayGlyph.h"
#include "presentation/tray/trayTexts.h"

#include <QIcon>
#include <QPixmap>

#include <array>

namespace tarnvale {

namespace {

constexpr std::array pixmapSizes{16, 22, 24, 32, 48};

/// Empty when the icon theme lacks it. Qt also finds an icon under a shorter name, which isn't the one meant.
QString themeIcon(bool alarm) {
    const QString name = alarm ? QStringLiteral("dev.tarnvale.Tarnvale-alarm-symbolic")
                               : QStringLiteral("dev.tarnvale.Tarnvale-symbolic");
    return QIcon::fromTheme(name).name() == name ? name : QString();
}

TrayLook lookFor(const std::set<std::int64_t> &stopped, const QColor &ink) {
    TrayLook look{themeIcon(!stopped.empty()), {}, trayToolTip(stopped), trayAccessibleText(stopped)};
    for (const int size : pixmapSizes)
        look.pixmaps.append(trayPixmap(trayGlyph(size, ink, !stopped.empty())));
    return look;
}

QIcon drawnIcon(const QColor &ink, bool alarm) {
    QIcon icon;
    for (const int size : pixmapSizes)
        icon.addPixmap(QPixmap::fromImage(trayGlyph(size, ink, alarm)));
    return icon;
}

} // namespace

TrayIcon::TrayIcon(const QDBusConnection &bus, Clock &clock, std::unique_ptr<XembedTray> xembed,
                   QObject *parent)
    : QObject(parent), m_clock(clock), m_menu(bus), m_item(bus), m_hosts(bus), m_xembed(std::move(xembed)) {
    connect(&m_item, &StatusNotifierItem::activated, this, &TrayIcon::activated);
    // Where a click shows the menu, the middle button is the short way to the panel.
    connect(&m_item, &StatusNotifierItem::secondaryActivated, this, &TrayIcon::activated);
    connect(&m_item, &StatusNotifierItem::menuRequested, this, &TrayIcon::menuRequested);
    connect(&m_hosts, &TrayHosts::hasHostChanged, this, &TrayIcon::onHostChanged);
    connect(&m_wait, &QFutureWatcher<void>::finished, this, &TrayIcon::onWaitEnded);
    m_xembed->onClick = [this] { Q_EMIT activated(std::nullopt); };
    refresh();
    waitForHost();
}

TrayIcon::~TrayIcon() {
    m_xembed->onClick = {};
}

void TrayIcon::setAlarm(const std::set<std::int64_t> &stoppedPorts) {
    if (std::exchange(m_stopped, stoppedPorts) != stoppedPorts)
        refresh();
}

void TrayIcon::setInk(const QColor &ink) {
    if (std::exchange(m_ink, ink) != ink)
        refresh();
}

void TrayIcon::setHighlighted(bool) {}

std::optional<QRect> TrayIcon::geometry() const {
    return m_kind == TrayKind::xembed ? m_xembed->geometry() : std::nullopt;
}

void TrayIcon::onHostChanged() {
    if (m_hosts.hasHost()) {
        m_xembed->hide();
        setKind(TrayKind::statusNotifier);
    } else {
        setKind(TrayKind::none);
        waitForHost();
    }
}

/// A desktop that starts its tray anew gets the same time again before another tray is taken.
void TrayIcon::waitForHost() {
    m_wait.setFuture(m_clock.sleep(patience));
}

void TrayIcon::onWaitEnded() {
    if (m_wait.isCanceled() || m_hosts.hasHost()) // the clock is gone, or the wait was for nothing
        return;
    lookForXembed();
    waitForHost();
}

void TrayIcon::lookForXembed() {
    const bool isThere = m_xembed->isAvailable();
    setKind(isThere ? TrayKind::xembed : TrayKind::none);
    if (!isThere)
        m_xembed->hide();
}

void TrayIcon::refresh() {
    m_item.setLook(lookFor(m_stopped, m_ink));
    if (m_kind == TrayKind::xembed)
        m_xembed->show(drawnIcon(m_ink, !m_stopped.empty()), trayToolTip(m_stopped));
}

void TrayIcon::setKind(TrayKind kind) {
    if (std::exchange(m_kind, kind) == kind)
        return;
    refresh();
    Q_EMIT kindChanged();
}

} // namespace tarnvale
