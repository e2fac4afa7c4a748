#include "platform/linux/AutostartLoginItem.h"

#include "platform/linux/DesktopFile.h"
#include "platform/linux/replaceFile.h"

#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include <cstdlib>

namespace tarnvale {

namespace {

constexpr qint64 sizeLimit = 256 << 10;

QString entryIn(const QString &folder) {
    return folder + QStringLiteral("/dev.tarnvale.Tarnvale.desktop");
}

/// The desktop starts the program of the entry at `path`. One that can't be read starts nothing.
bool isEnabled(const QString &path) {
    const auto content = readRegularFile(path, sizeLimit);
    if (!content || content->isEmpty())
        return false;
    const DesktopFile entry = DesktopFile::parse(content->toStdString());
    return !entry.text("Exec").empty() && !entry.isTrue("Hidden") &&
           !entry.isFalse("X-GNOME-Autostart-enabled");
}

bool isThere(const QString &path) {
    const QFileInfo info(path);
    return info.exists() || info.isSymLink();
}

std::string ownExecutable() {
    if (const char *image = std::getenv("APPIMAGE"); image != nullptr && *image == '/')
        return image;
    return QFile::symLinkTarget(QStringLiteral("/proc/self/exe")).toStdString();
}

QByteArray entryFor(const std::string &executable) {
    return QByteArray::fromStdString("[Desktop Entry]\n"
                                     "Type=Application\n"
                                     "Name=Tarnvale\n"
                                     "Icon=dev.tarnvale.Tarnvale\n"
                                     "Exec=" +
                                     execValue(executable) + "\nTryExec=" + desktopFileText(executable) +
                                     "\nX-GNOME-Autostart-enabled=true\n");
}

} // namespace

AutostartLoginItem::AutostartLoginItem(Places places) : m_places(std::move(places)) {}

AutostartLoginItem::Places AutostartLoginItem::standardPlaces() {
    QStringList folders = QStandardPaths::standardLocations(QStandardPaths::GenericConfigLocation);
    for (QString &folder : folders)
        folder += QStringLiteral("/autostart");
    const QString own = folders.takeFirst();
    return {own, folders, ownExecutable()};
}

LoginItem::Status AutostartLoginItem::status() const {
    const bool starts = isThere(userFile()) ? isEnabled(userFile()) : isStartedBySystem();
    return starts ? Status::enabled : Status::other;
}

std::expected<void, std::string> AutostartLoginItem::enable() {
    return replaceFile(userFile(), entryFor(m_places.executable));
}

std::expected<void, std::string> AutostartLoginItem::disable() {
    if (isStartedBySystem())
        return replaceFile(userFile(), "[Desktop Entry]\nType=Application\nName=Tarnvale\nHidden=true\n");
    QFile file(userFile());
    if (!isThere(userFile()) || file.remove())
        return {};
    return std::unexpected(file.errorString().toStdString());
}

QString AutostartLoginItem::userFile() const {
    return entryIn(m_places.userFolder);
}

/// By an entry that the user's own doesn't stand in for.
bool AutostartLoginItem::isStartedBySystem() const {
    for (const QString &folder : m_places.systemFolders)
        if (isThere(entryIn(folder)))
            return isEnabled(entryIn(folder));
    return false;
}

} // namespace tarnvale
