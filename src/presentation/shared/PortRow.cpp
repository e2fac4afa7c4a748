#include "presentation/shared/PortRow.h"

#include "presentation/ToolStyle.h"
#include "presentation/plainText.h"
#include "presentation/portTexts.h"
#include "presentation/shared/listText.h"

namespace tarnvale {

namespace {

QString toText(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

QString healthName(const std::optional<Health> &health) {
    switch (health ? health->kind : Health::Kind::unknown) {
    case Health::Kind::responding:
        return QStringLiteral("responding");
    case Health::Kind::serverError:
        return QStringLiteral("serverError");
    case Health::Kind::noResponse:
        return QStringLiteral("noResponse");
    case Health::Kind::unknown:
        break;
    }
    return {};
}

void addPills(PortRow &row, const RowEntry &entry) {
    constexpr std::size_t shown = 2;
    QStringList numbers{QString::number(entry.port->port)};
    for (const std::int64_t port : entry.otherPorts)
        numbers.append(QString::number(port));
    row.pill = numbers.first();
    row.furtherPills = numbers.mid(1, shown - 1);
    const QStringList others = numbers.mid(shown);
    if (others.isEmpty())
        return;
    row.morePills = QStringLiteral("+%1").arg(others.size());
    row.morePorts = others.join(QStringLiteral(", "));
}

void addStyle(PortRow &row, const ListeningPort &port) {
    const ToolStyle style = toolStyle(port);
    row.symbol = toText(style.symbol);
    row.logo = toText(style.logo.value_or(""));
    row.tint = tintName(style.tint);
    row.inContainer = style.inContainer;
}

void addAgent(PortRow &row, const ListeningPort &port) {
    if (!port.agent)
        return;
    row.agent = plainText(*port.agent);
    row.agentLogo = row.agent.toLower().contains(QStringLiteral("codex")) ? QStringLiteral("logo-openai")
                                                                          : QStringLiteral("logo-claude");
}

/// What a screen reader says of the row.
QString spoken(const PortRow &row) {
    QStringList parts{row.title};
    if (!row.subtitle.isEmpty())
        parts.append(row.subtitle);
    const QStringList others =
        row.furtherPills + row.morePorts.split(QStringLiteral(", "), Qt::SkipEmptyParts);
    parts.append(others.isEmpty()
                     ? listText("port %1").arg(row.pill)
                     : listText("ports %1").arg((QStringList{row.pill} + others).join(QStringLiteral(", "))));
    if (!row.health.isEmpty())
        parts.append(row.healthSummary);
    if (!row.agent.isEmpty())
        parts.append(listText("Started by %1").arg(row.agent));
    if (row.isWatched)
        parts.append(listText("Watched"));
    if (row.isExposed)
        parts.append(listText("Exposed to network"));
    if (!row.publicUrl.isEmpty())
        parts.append(listText("Shared publicly"));
    return parts.join(QStringLiteral(", "));
}

} // namespace

QString tintName(const Tint &tint) {
    if (const auto *rgb = std::get_if<Rgb>(&tint))
        return QStringLiteral("#%1").arg(static_cast<std::uint32_t>(*rgb), 6, 16, QLatin1Char('0'));
    switch (std::get<StandardColor>(tint)) {
    case StandardColor::blue:
        return QStringLiteral("blue");
    case StandardColor::brown:
        return QStringLiteral("brown");
    case StandardColor::cyan:
        return QStringLiteral("cyan");
    case StandardColor::gray:
        return QStringLiteral("gray");
    case StandardColor::orange:
        return QStringLiteral("orange");
    case StandardColor::red:
        return QStringLiteral("red");
    case StandardColor::teal:
        break;
    }
    return QStringLiteral("teal");
}

PortRow portRow(const RowEntry &entry, PortGroup group, const PortFacts &facts, Instant now,
                const ApplicationName &applicationName) {
    const ListeningPort &port = entry.port;
    const auto [title, subtitle] = portTitleAndSubtitle(port, now, applicationName);
    PortRow row{.id = toText(entry.id()),
                .section = tarnvale::title(group),
                .title = title,
                .subtitle = subtitle,
                .toolTip = portToolTip(port),
                .isWeb = entry.isWeb,
                .isWatched = facts.isWatched,
                .isExposed = port.isExposed,
                .publicUrl = toText(facts.publicUrl.value_or("")),
                .copyTip = entry.isWeb ? listText("Copy URL")
                                       : listText("Copy Address (localhost:%1)").arg(port.port),
                .stopTip = stopActionTitle(port),
                .confirmTitle = port.service || port.container ? listText("Stop") : listText("Kill")};
    if (entry.isWeb)
        row.health = healthName(facts.health);
    if (!row.health.isEmpty())
        row.healthSummary = toText(facts.health->summary());
    addStyle(row, port);
    addAgent(row, port);
    addPills(row, entry);
    row.hasBadges = !row.agent.isEmpty() || row.isWatched || row.isExposed || !row.publicUrl.isEmpty();
    row.accessibleName = spoken(row);
    return row;
}

const std::vector<ListRole<PortRow>> &PortRow::roles() {
    static const std::vector<ListRole<PortRow>> all{
        {"rowId", [](const PortRow &row) -> QVariant { return row.id; }},
        {"section", [](const PortRow &row) -> QVariant { return row.section; }},
        {"title", [](const PortRow &row) -> QVariant { return row.title; }},
        {"subtitle", [](const PortRow &row) -> QVariant { return row.subtitle; }},
        {"toolTip", [](const PortRow &row) -> QVariant { return row.toolTip; }},
        {"accessibleName", [](const PortRow &row) -> QVariant { return row.accessibleName; }},
        {"symbol", [](const PortRow &row) -> QVariant { return row.symbol; }},
        {"logo", [](const PortRow &row) -> QVariant { return row.logo; }},
        {"tint", [](const PortRow &row) -> QVariant { return row.tint; }},
        {"inContainer", [](const PortRow &row) -> QVariant { return row.inContainer; }},
        {"isWeb", [](const PortRow &row) -> QVariant { return row.isWeb; }},
        {"health", [](const PortRow &row) -> QVariant { return row.health; }},
        {"healthSummary", [](const PortRow &row) -> QVariant { return row.healthSummary; }},
        {"agent", [](const PortRow &row) -> QVariant { return row.agent; }},
        {"agentLogo", [](const PortRow &row) -> QVariant { return row.agentLogo; }},
        {"isWatched", [](const PortRow &row) -> QVariant { return row.isWatched; }},
        {"isExposed", [](const PortRow &row) -> QVariant { return row.isExposed; }},
        {"publicUrl", [](const PortRow &row) -> QVariant { return row.publicUrl; }},
        {"hasBadges", [](const PortRow &row) -> QVariant { return row.hasBadges; }},
        {"pill", [](const PortRow &row) -> QVariant { return row.pill; }},
        {"furtherPills", [](const PortRow &row) -> QVariant { return row.furtherPills; }},
        {"morePills", [](const PortRow &row) -> QVariant { return row.morePills; }},
        {"morePorts", [](const PortRow &row) -> QVariant { return row.morePorts; }},
        {"copyTip", [](const PortRow &row) -> QVariant { return row.copyTip; }},
        {"stopTip", [](const PortRow &row) -> QVariant { return row.stopTip; }},
        {"confirmTitle", [](const PortRow &row) -> QVariant { return row.confirmTitle; }},
    };
    return all;
}

} // namespace tarnvale
