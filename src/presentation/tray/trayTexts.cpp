#include "presentation/tray/trayTexts.h"

#include <QCoreApplication>
#include <QStringList>

namespace tarnvale {

namespace {

QString translated(const char *text) {
    return QCoreApplication::translate("MenuBarController", text);
}

} // namespace

QString trayToolTip(const std::set<std::int64_t> &stopped) {
    if (stopped.empty())
        return translated(QT_TRANSLATE_NOOP("MenuBarController", "Tarnvale"));
    QStringList ports;
    for (const std::int64_t port : stopped)
        ports << QString::number(port);
    const QString text = stopped.size() == 1
                             ? translated(QT_TRANSLATE_NOOP("MenuBarController", "Stopped: port %1"))
                             : translated(QT_TRANSLATE_NOOP("MenuBarController", "Stopped: ports %1"));
    return text.arg(ports.join(QStringLiteral(", ")));
}

QString trayAccessibleText(const std::set<std::int64_t> &stopped) {
    return stopped.empty()
               ? translated(QT_TRANSLATE_NOOP("MenuBarController", "Tarnvale"))
               : translated(QT_TRANSLATE_NOOP("MenuBarController", "Tarnvale — a watched port stopped"));
}

} // namespace tarnvale
