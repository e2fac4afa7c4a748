// Ports that are made public by an outside tool.

#include "discovery/text.h"
#include "platform/Desktop.h"
#include "platform/Tools.h"
#include "store/PortStore.h"
#include "store/set.h"

#include <QPointer>

namespace tarnvale {

namespace {

/// The last `count` characters of `text`.
std::string lastCharacters(std::string text, std::size_t count) {
    const std::size_t all = characterCount(text);
    if (all > count)
        text.erase(0, firstCharacters(text, all - count).size());
    return text;
}

} // namespace

std::optional<TunnelTool> PortStore::tunnelTool() const {
    const auto found = findTunnelTool(m_platform.tools);
    return found ? std::optional(found->tool) : std::nullopt;
}

void PortStore::share(const ListeningPort &port) {
    if (m_tunnels.contains(port.port) || !isWebPort(port))
        return;
    const auto tool = findTunnelTool(m_platform.tools);
    if (!tool) {
        setError(tr("Install cloudflared (brew install cloudflared) or ngrok to share a port."));
        return;
    }
    requestNotificationAuthorization();
    const QPointer<PortStore> alive(this);
    const auto process = std::make_shared<std::weak_ptr<RunningTool>>(); // known once it runs
    const auto started = m_platform.tools.start(
        tool->path, tunnelArguments(port.port, tool->tool),
        [alive, process, number = port.port](const std::string &text) {
            if (alive)
                alive->tunnelOutput(text, process->lock(), number);
        },
        [alive, process, number = port.port] {
            if (alive)
                alive->tunnelExited(process->lock(), number);
        });
    if (!started) {
        setError(tr("Couldn't start %1: %2")
                     .arg(QString::fromStdString(tunnelToolName(tool->tool)),
                          QString::fromStdString(started.error())));
        return;
    }
    *process = *started;
    auto tunnels = m_tunnels;
    tunnels[port.port] = {.tool = tool->tool, .process = *started, .url = {}, .output = {}};
    set(m_tunnels, std::move(tunnels), &PortStore::tunnelsChanged);
    setError(std::nullopt);
}

/// Only the first address counts, and it is looked for in all that is kept of the output, since a read may
/// end within it.
void PortStore::tunnelOutput(const std::string &text, const std::shared_ptr<RunningTool> &process,
                             std::int64_t port) {
    constexpr std::size_t mostCharacters = 4000;
    const auto found = m_tunnels.find(port);
    if (found == m_tunnels.end() || found->second.process != process)
        return;
    ActiveTunnel &tunnel = found->second;
    tunnel.output = lastCharacters(tunnel.output + text, mostCharacters);
    const auto url = tunnel.url ? std::nullopt : publicURL(tunnel.output);
    if (url)
        tunnel.url = url;
    Q_EMIT tunnelsChanged();
    if (!url)
        return;
    copyPublicURL(port);
    postNotification(tr("Port %1 is public").arg(port),
                     tr("%1 — copied to the clipboard.").arg(QString::fromStdString(*url)), "tunnelReady",
                     NotificationPayload{.port = port, .args = {}, .cwd = {}, .url = url});
}

/// The end of a tool that the user stopped, or of one before a new share, leaves no trace.
void PortStore::tunnelExited(const std::shared_ptr<RunningTool> &process, std::int64_t port) {
    const auto found = m_tunnels.find(port);
    if (found == m_tunnels.end() || found->second.process != process)
        return;
    auto tunnels = m_tunnels;
    const auto node = tunnels.extract(port);
    const ActiveTunnel &tunnel = node.mapped();
    set(m_tunnels, std::move(tunnels), &PortStore::tunnelsChanged);
    if (tunnel.url)
        return;
    const auto lines = nonEmptyLines(tunnel.output);
    const std::string line = lines.empty() ? "exited" : std::string(lines.back());
    setError(tr("%1 couldn't share port %2: %3")
                 .arg(QString::fromStdString(tunnelToolName(tunnel.tool)), QString::number(port),
                      QString::fromStdString(line)));
}

void PortStore::stopSharing(std::int64_t port) {
    auto tunnels = m_tunnels;
    const auto node = tunnels.extract(port);
    if (node.empty())
        return;
    set(m_tunnels, std::move(tunnels), &PortStore::tunnelsChanged);
    node.mapped().process->terminate();
}

void PortStore::copyPublicURL(std::int64_t port) {
    const auto found = m_tunnels.find(port);
    if (found != m_tunnels.end() && found->second.url)
        m_platform.clipboard.setText(*found->second.url);
}

} // namespace tarnvale
