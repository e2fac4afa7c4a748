// A program with our icon in the tray of its display: STATE. It writes the kind of the tray, the icon's place
// and how many clicks there were to the file STATE whenever one of them changes.

#include "presentation/tray/TrayIcon.h"

#include "support/ManualClock.h"

#include <QApplication>
#include <QFile>
#include <QTimer>

#include <fstream>
#include <string>

namespace {

std::string kindName(tarnvale::TrayKind kind) {
    switch (kind) {
    case tarnvale::TrayKind::none:
        return "none";
    case tarnvale::TrayKind::statusNotifier:
        return "statusNotifier";
    case tarnvale::TrayKind::xembed:
        break;
    }
    return "xembed";
}

/// "xembed 700 2 22 22 1\n", with zeros where the place isn't known.
std::string stateOf(const tarnvale::TrayIcon &icon, int clicks) {
    const QRect place = icon.geometry().value_or(QRect());
    std::string text = kindName(icon.kind());
    for (const int number : {place.x(), place.y(), place.width(), place.height(), clicks})
        text += " " + std::to_string(number);
    return text + "\n";
}

/// At once, so that nobody reads a half.
void replace(const QString &path, const std::string &text) {
    std::ofstream((path + QStringLiteral(".new")).toStdString()) << text;
    QFile::remove(path);
    QFile::rename(path + QStringLiteral(".new"), path);
}

} // namespace

int main(int argc, char **argv) {
    const QApplication application(argc, argv);
    const QString path = QApplication::arguments().value(1);
    tarnvale::ManualClock clock;
    tarnvale::TrayIcon icon(QDBusConnection::sessionBus(), clock);
    int clicks = 0;
    QObject::connect(&icon, &tarnvale::TrayIcon::activated, &icon, [&] { ++clicks; });
    std::string written;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &icon, [&] {
        clock.advance(std::chrono::seconds(1)); // faster than time
        const std::string state = stateOf(icon, clicks);
        if (state != written)
            replace(path, written = state);
    });
    timer.start(std::chrono::milliseconds(20));
    return QApplication::exec();
}
