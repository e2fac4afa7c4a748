#pragma once

#include "platform/Platform.h"
#include "presentation/shared/PortRowsController.h"
#include "presentation/shared/portMenu.h"
#include "probes/LogSource.h"

#include <QList>
#include <QObject>
#include <QString>

#include <optional>
#include <vector>

namespace tarnvale {

class PortStore;

/// What the inspector must know that lies on the disk.
struct InspectorFiles {
    PortFiles files;
    std::optional<LogSource> log;

    bool operator==(const InspectorFiles &) const = default;
};

/// A line of the details, with the text that its copy button copies.
struct DetailLine {
    QString label;
    QString value;

    [[nodiscard]] QString key() const { return label; }
    [[nodiscard]] static const std::vector<ListRole<DetailLine>> &roles();

    bool operator==(const DetailLine &) const = default;
};

/// All that the inspector says of one row, in words and ready to be shown. Texts are plain; an empty one
/// means that there is nothing to say.
struct InspectorFacts {
    Q_GADGET
    Q_PROPERTY(int port MEMBER port)
    Q_PROPERTY(QString title MEMBER title)
    Q_PROPERTY(QString subtitle MEMBER subtitle)
    Q_PROPERTY(QString symbol MEMBER symbol)
    Q_PROPERTY(QString logo MEMBER logo)
    Q_PROPERTY(QString tint MEMBER tint)
    Q_PROPERTY(bool inContainer MEMBER inContainer)
    Q_PROPERTY(bool isWeb MEMBER isWeb)
    Q_PROPERTY(QString chip MEMBER chip)
    Q_PROPERTY(QString chipTint MEMBER chipTint)
    Q_PROPERTY(QString chipTip MEMBER chipTip)
    Q_PROPERTY(QString responseTime MEMBER responseTime)
    Q_PROPERTY(bool isSlow MEMBER isSlow)
    Q_PROPERTY(QString uptime MEMBER uptime)
    Q_PROPERTY(QString copyTitle MEMBER copyTitle)
    Q_PROPERTY(QString restartTitle MEMBER restartTitle)
    Q_PROPERTY(bool hasUsage MEMBER hasUsage)
    Q_PROPERTY(QString cpu MEMBER cpu)
    Q_PROPERTY(QString memory MEMBER memory)
    Q_PROPERTY(QList<double> cpuHistory MEMBER cpuHistory)
    Q_PROPERTY(QString cpuCaption MEMBER cpuCaption)
    Q_PROPERTY(bool isBusy MEMBER isBusy)
    Q_PROPERTY(QString command MEMBER command)
    Q_PROPERTY(QString folder MEMBER folder)
    Q_PROPERTY(bool isWatched MEMBER isWatched)
    Q_PROPERTY(QString watchNote MEMBER watchNote)
    Q_PROPERTY(QString healthPath MEMBER healthPath)
    Q_PROPERTY(QString sharing MEMBER sharing)
    Q_PROPERTY(QString shareTool MEMBER shareTool)
    Q_PROPERTY(QString publicUrl MEMBER publicUrl)
    Q_PROPERTY(bool hasPhone MEMBER hasPhone)
    Q_PROPERTY(QString stopTitle MEMBER stopTitle)
    Q_PROPERTY(QString stopTip MEMBER stopTip)
    Q_PROPERTY(QString logName MEMBER logName)
    Q_PROPERTY(bool isLogFile MEMBER isLogFile)
    Q_PROPERTY(bool canCaptureLogs MEMBER canCaptureLogs)

public:
    int port = 0;
    QString title;
    QString subtitle;
    QString symbol; ///< of the tile
    QString logo;
    QString tint; ///< a standard colour's name, or "#rrggbb"
    bool inContainer = false;
    bool isWeb = false;
    QString chip;     ///< "200", "No reply", "Listening"
    QString chipTint; ///< a standard colour's name
    QString chipTip;
    QString responseTime; ///< "12 ms"
    bool isSlow = false;
    QString uptime; ///< "up 2h 5m"
    QString copyTitle;
    QString restartTitle; ///< empty: can't be restarted
    bool hasUsage = false;
    QString cpu;              ///< "12.5%"
    QString memory;           ///< "84.2 MB"
    QList<double> cpuHistory; ///< percent, oldest first
    QString cpuCaption;
    bool isBusy = false; ///< the latest sample is high
    QString command;
    QString folder;
    bool isWatched = false;
    QString watchNote;
    QString healthPath; ///< "/" where none is stored
    QString sharing;    ///< "notOffered", "noTool", "available", "starting" or "up"
    QString shareTool;
    QString publicUrl;
    bool hasPhone = false; ///< other devices can reach it
    QString stopTitle;
    QString stopTip;
    QString logName; ///< empty: there is no log to read
    bool isLogFile = false;
    bool canCaptureLogs = false; ///< a restart would give it a log

    bool operator==(const InspectorFacts &) const = default;
};

/// What `store` knows of the row at `now`, with what lies on the disk in `files`.
[[nodiscard]] InspectorFacts inspectorFacts(const PortStore &store, const RowEntry &entry,
                                            const InspectorFiles &files, Instant now,
                                            const ApplicationName &applicationName);

/// The lines of the details in their order; what isn't known has none.
[[nodiscard]] std::vector<DetailLine> detailLines(const RowEntry &entry,
                                                  const ApplicationName &applicationName);

/// The text and the colour's name for a health: "404" in "orange".
[[nodiscard]] std::pair<QString, QString> healthChip(const Health &health);

} // namespace tarnvale
