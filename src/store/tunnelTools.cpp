#include "store/tunnelTools.h"

#include <QRegularExpression>
#include <QString>

namespace tarnvale {

std::string tunnelToolName(TunnelTool tool) {
    return tool == TunnelTool::cloudflared ? "cloudflared" : "ngrok";
}

std::optional<FoundTunnelTool> findTunnelTool(const Tools &tools) {
    for (const TunnelTool tool : {TunnelTool::cloudflared, TunnelTool::ngrok})
        if (const auto path = tools.find(tunnelToolName(tool)))
            return FoundTunnelTool{tool, *path};
    return std::nullopt;
}

std::vector<std::string> tunnelArguments(std::int64_t port, TunnelTool tool) {
    const std::string number = std::to_string(port);
    switch (tool) {
    case TunnelTool::cloudflared:
        return {"tunnel", "--no-autoupdate", "--url", "http://localhost:" + number};
    case TunnelTool::ngrok:
        break;
    }
    return {"http", number, "--log", "stdout", "--log-format", "logfmt"};
}

std::optional<std::string> publicURL(const std::string &output) {
    // The domains under which the two services give out addresses: the first is cloudflared's, the others
    // are ngrok's, of free and of paid accounts.
    static const QRegularExpression address(QStringLiteral(
        "https://(?!api\\.)[A-Za-z0-9.-]+"
        "\\.(?:trycloudflare\\.com|ngrok-free\\.app|ngrok-free\\.dev|ngrok\\.app|ngrok\\.io)"));
    const auto match = address.match(QString::fromStdString(output));
    return match.hasMatch() ? std::optional(match.captured().toStdString()) : std::nullopt;
}

} // namespace tarnvale
