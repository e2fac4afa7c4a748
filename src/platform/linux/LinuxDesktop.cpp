#include "platform/linux/LinuxDesktop.h"

#include "discovery/findTool.h"
#include "discovery/runTool.h"
#include "discovery/text.h"
#include "platform/background.h"
#include "platform/linux/DesktopFile.h"
#include "platform/linux/activateWindow.h"
#include "platform/linux/replaceFile.h"
#include "platform/linux/withAncestors.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QFileInfo>
#include <QRegularExpression>
#include <QUrl>
#include <QVariantMap>

namespace tarnvale {

namespace {

constexpr std::string_view suffix = ".desktop";

/// Starts the opener of the desktop on `what`, in the calling thread.
void open(const std::string &what) {
    if (const auto opener = findInPath("xdg-open"))
        runOpener(*opener, {what}, std::chrono::milliseconds(0));
}

void openFolderOf(const std::string &path) {
    const QFileInfo item(QString::fromStdString(path));
    const QString folder = item.isDir() ? item.filePath() : item.path();
    if (QFileInfo(folder).isDir())
        open(folder.toStdString());
}

/// The file name of `hostApp` as the D-Bus name that it is for applications on the bus (freedesktop.org,
/// Desktop Entry, "D-Bus Activation"); empty when it can't be one.
QString busNameOf(const std::string &hostApp) {
    std::string_view name = lastPathComponent(hostApp);
    if (!name.ends_with(suffix))
        return {};
    name.remove_suffix(suffix.size());
    static const QRegularExpression wellKnown(
        QStringLiteral("\\A[A-Za-z_-][A-Za-z0-9_-]*(\\.[A-Za-z_-][A-Za-z0-9_-]*)+\\z"));
    constexpr qsizetype longest = 255;
    const QString text = QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size()));
    return text.size() <= longest && wellKnown.match(text).hasMatch() ? text : QString();
}

bool isOnBus(const QDBusConnection &bus, const QString &name) {
    constexpr int milliseconds = 500;
    const QString daemon = QStringLiteral("org.freedesktop.DBus");
    QDBusMessage call = QDBusMessage::createMethodCall(daemon, QStringLiteral("/org/freedesktop/DBus"),
                                                       daemon, QStringLiteral("NameHasOwner"));
    call << name;
    const QDBusMessage reply = bus.call(call, QDBus::Block, milliseconds);
    return reply.type() == QDBusMessage::ReplyMessage && reply.arguments().value(0).toBool();
}

/// "Editor" for "/usr/share/applications/Editor.desktop".
std::string fileNameOf(const std::string &hostApp) {
    const std::string_view name = lastPathComponent(hostApp);
    const std::size_t dot = name.rfind('.');
    return std::string(dot == name.npos || dot == 0 ? name : name.substr(0, dot));
}

} // namespace

LinuxDesktop::LinuxDesktop() : LinuxDesktop(Setup()) {}

LinuxDesktop::LinuxDesktop(Setup setup) : m_setup(std::move(setup)) {}

void LinuxDesktop::openUrl(const std::string &url) {
    if (QUrl(QString::fromStdString(url), QUrl::StrictMode).scheme().isEmpty())
        return;
    inBackground([url] { open(url); });
}

void LinuxDesktop::reveal(const std::string &path) {
    if (!path.starts_with('/'))
        return;
    const QString manager = QStringLiteral("org.freedesktop.FileManager1");
    constexpr int milliseconds = 10'000; // it may have to be started first
    QDBusMessage call = QDBusMessage::createMethodCall(
        manager, QStringLiteral("/org/freedesktop/FileManager1"), manager, QStringLiteral("ShowItems"));
    const QUrl item = QUrl::fromLocalFile(QString::fromStdString(path));
    call << QStringList{QString::fromLatin1(item.toEncoded())} << QString();
    auto *watcher = new QDBusPendingCallWatcher(m_setup.bus.asyncCall(call, milliseconds), &m_context);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, &m_context, [watcher, path] {
        watcher->deleteLater();
        if (!watcher->isError())
            return;
        inBackground([path] { openFolderOf(path); });
    });
}

void LinuxDesktop::openLog(const std::string &path) {
    if (!path.starts_with('/'))
        return;
    inBackground([path] {
        if (QFileInfo(QString::fromStdString(path)).isFile())
            open(path);
    });
}

bool LinuxDesktop::focusApplication(const std::string &hostApp, Pid pid) {
    return activateWindowOf(withAncestors(pid), m_setup.display) || activateByName(hostApp);
}

std::string LinuxDesktop::applicationName(const std::string &hostApp) const {
    if (const auto known = m_names.find(hostApp); known != m_names.end())
        return known->second;
    constexpr qint64 sizeLimit = 256 << 10;
    std::string name;
    if (hostApp.ends_with(suffix))
        if (const auto content = readRegularFile(QString::fromStdString(hostApp), sizeLimit))
            name = DesktopFile::parse(content->toStdString())
                       .localized("Name", m_setup.locale.empty() ? messageLocale() : m_setup.locale);
    if (name.empty())
        return fileNameOf(hostApp);
    return m_names[hostApp] = name;
}

bool LinuxDesktop::activateByName(const std::string &hostApp) {
    const QString name = busNameOf(hostApp);
    if (name.isEmpty() || !isOnBus(m_setup.bus, name))
        return false;
    QString object = QStringLiteral("/") + name;
    object.replace(QLatin1Char('.'), QLatin1Char('/')).replace(QLatin1Char('-'), QLatin1Char('_'));
    QDBusMessage call = QDBusMessage::createMethodCall(
        name, object, QStringLiteral("org.freedesktop.Application"), QStringLiteral("Activate"));
    call << QVariantMap();
    m_setup.bus.send(call);
    return true;
}

} // namespace tarnvale
