#include "presentation/portTexts.h"

#include "discovery/formatUptime.h"
#include "discovery/managerName.h"
#include "discovery/naming.h"
#include "discovery/text.h"
#include "presentation/plainText.h"

#include <QCoreApplication>
#include <QStringList>

#include <optional>
#include <string_view>

namespace tarnvale {

namespace {

constexpr std::string_view separator = " · ";

QString cutToText(std::string_view bytes) {
    constexpr std::size_t longest = 2000;
    return cutPlainText(bytes, longest);
}

bool differs(std::string_view one, std::string_view other) {
    return plainText(one).compare(plainText(other), Qt::CaseInsensitive) != 0;
}

/// What stands behind `title`: who runs it, or the tool where the title doesn't name it already.
QString toolText(const ListeningPort &port, std::string_view title) {
    if (port.brewService())
        return QCoreApplication::translate("PortUI", "Homebrew");
    if (port.service)
        return plainText(managerName(port.serviceManager));
    if (const std::string name = port.displayName(); differs(name, title))
        return plainText(name);
    if (const std::string_view command = strippingArchSuffix(port.command); differs(command, title))
        return plainText(command);
    return {};
}

/// "web · nginx:1.27" is the container's name and its image.
TitleAndSubtitle containerTexts(std::string_view container) {
    const std::size_t nameEnd = container.find(separator);
    if (nameEnd == container.npos)
        return {plainText(container), QCoreApplication::translate("PortUI", "Docker")};
    const std::string_view rest = container.substr(nameEnd + separator.size());
    return {plainText(container.substr(0, nameEnd)), plainText(rest.substr(0, rest.find(separator)))};
}

TitleAndSubtitle nameAndTool(const ListeningPort &port) {
    if (port.container)
        return containerTexts(*port.container);
    const std::string title = port.title();
    return {plainText(title), toolText(port, title)};
}

QString ageText(Instant startedAt, Instant now) {
    const std::string age = formatUptime(std::chrono::duration<double>(now - startedAt).count());
    return QCoreApplication::translate("PortUI", "up %1").arg(QString::fromStdString(age));
}

} // namespace

TitleAndSubtitle portTitleAndSubtitle(const ListeningPort &port, Instant now,
                                      const ApplicationName &applicationName) {
    auto [title, tool] = nameAndTool(port);
    QStringList parts{tool};
    if (port.hostApp)
        parts.append(plainText(applicationName(*port.hostApp)));
    if (port.startedAt)
        parts.append(ageText(*port.startedAt, now));
    parts.removeAll(QString());
    return {title, parts.join(QString::fromUtf8(separator.data(), separator.size()))};
}

QString portTitle(const ListeningPort &port) {
    return nameAndTool(port).title;
}

QString portToolTip(const ListeningPort &port) {
    const bool hasArgs = port.args && !port.args->empty();
    QStringList lines{cutToText(hasArgs ? *port.args : port.command),
                      QCoreApplication::translate("PortUI", "PID %1").arg(port.pid)};
    if (port.agent)
        lines.append(QCoreApplication::translate("PortUI", "Started by %1").arg(plainText(*port.agent)));
    if (port.cwd)
        lines.append(cutToText(*port.cwd));
    return lines.join(QLatin1Char('\n'));
}

QString stopActionTitle(const ListeningPort &port) {
    if (const auto name = port.containerName())
        return QCoreApplication::translate("PortUI", "Stop container (docker stop %1)").arg(plainText(*name));
    if (!port.service)
        return QCoreApplication::translate("PortUI", "Kill process");
    if (const auto formula = port.brewService())
        return QCoreApplication::translate("PortUI", "Stop service (brew services stop %1)")
            .arg(plainText(*formula));
    return QCoreApplication::translate("PortUI", "Stop %1 service")
        .arg(plainText(managerName(port.serviceManager)));
}

} // namespace tarnvale
