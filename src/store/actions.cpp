// The actions of one step.

#include "platform/Desktop.h"
#include "store/PortStore.h"

#include <filesystem>

namespace tarnvale {

namespace {

std::string addressOf(const ListeningPort &port) {
    return "localhost:" + std::to_string(port.port);
}

} // namespace

void PortStore::openInBrowser(const ListeningPort &port) {
    if (isWebPort(port))
        m_platform.desktop.openUrl("http://" + addressOf(port));
}

void PortStore::copyURL(const ListeningPort &port) {
    copyText((isWebPort(port) ? "http://" : "") + addressOf(port));
}

void PortStore::copyPort(const ListeningPort &port) {
    copyText(std::to_string(port.port));
}

void PortStore::copyPID(const ListeningPort &port) {
    copyText(std::to_string(port.pid));
}

void PortStore::copyText(const std::string &text) {
    m_platform.clipboard.setText(text);
}

void PortStore::focusHostApp(const ListeningPort &port) {
    Desktop &desktop = m_platform.desktop;
    if (port.hostApp && !desktop.focusApplication(*port.hostApp, port.pid))
        setError(tr("%1 isn't running anymore.")
                     .arg(QString::fromStdString(desktop.applicationName(*port.hostApp))));
}

void PortStore::reveal(const ListeningPort &port) {
    if (port.cwd)
        m_platform.desktop.reveal(*port.cwd);
}

void PortStore::openInConsole(const std::string &path) {
    std::error_code error;
    if (std::filesystem::is_regular_file(path, error))
        m_platform.desktop.openLog(path);
}

} // namespace tarnvale
