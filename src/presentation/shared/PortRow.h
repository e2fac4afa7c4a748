#pragma once

#include "presentation/Tint.h"
#include "presentation/applicationFileName.h"
#include "presentation/groupedRows.h"
#include "presentation/shared/KeyedListModel.h"
#include "probes/Health.h"

#include <QString>
#include <QStringList>

#include <optional>
#include <string>
#include <vector>

namespace tarnvale {

/// What is known of a port beyond its record.
struct PortFacts {
    std::optional<Health> health;
    bool isWatched = false;
    std::optional<std::string> publicUrl; ///< where a tunnel makes it public

    bool operator==(const PortFacts &) const = default;
};

/// A row of a list of ports, in words and pictures, ready to be shown. All texts are plain.
struct PortRow {
    QString id; ///< "{pid}:{port}"
    QString section;
    QString title;
    QString subtitle;
    QString toolTip;
    QString accessibleName;
    QString symbol;
    QString logo;
    QString tint; ///< a standard colour's name, or "#rrggbb"
    bool inContainer = false;
    bool isWeb = false;
    QString health; ///< "responding", "serverError", "noResponse"; empty: no dot
    QString healthSummary;
    QString agent;
    QString agentLogo;
    bool isWatched = false;
    bool isExposed = false;
    QString publicUrl;
    bool hasBadges = false;   ///< an agent, watched, exposed or shared
    QString pill;             ///< its first port
    QStringList furtherPills; ///< its other ports that are shown
    QString morePills;        ///< "+3" for the rest
    QString morePorts;        ///< what they are
    QString copyTip;
    QString stopTip;
    QString confirmTitle; ///< "Stop" or "Kill"

    [[nodiscard]] QString key() const { return id; }
    [[nodiscard]] static const std::vector<ListRole<PortRow>> &roles();

    bool operator==(const PortRow &) const = default;
};

/// The row for `entry` in its section at `now`.
[[nodiscard]] PortRow portRow(const RowEntry &entry, PortGroup group, const PortFacts &facts, Instant now,
                              const ApplicationName &applicationName = applicationFileName);

/// The name of a colour as QML takes it: "teal", or "#ff2d20".
[[nodiscard]] QString tintName(const Tint &tint);

} // namespace tarnvale
