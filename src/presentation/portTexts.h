#pragma once

#include "discovery/Instant.h"
#include "discovery/ListeningPort.h"
#include "presentation/applicationFileName.h"

#include <QString>

namespace tarnvale {

// The texts that name one port. They hold what processes chose to call themselves, so they are plain text and
// must be shown as such; control and text-direction characters in them are replaced.

/// What a row says of its port.
struct TitleAndSubtitle {
    QString title;
    QString subtitle; ///< may be empty

    bool operator==(const TitleAndSubtitle &) const = default;
};

/// The name of `port`, and what else tells it apart, joined by " · ": tool, host application and age at
/// `now`.
[[nodiscard]] TitleAndSubtitle
portTitleAndSubtitle(const ListeningPort &port, Instant now,
                     const ApplicationName &applicationName = applicationFileName);

/// The name of `port` alone.
[[nodiscard]] QString portTitle(const ListeningPort &port);

/// Lines with command line, pid, agent and folder, as far as they are known. An endless command line is cut.
[[nodiscard]] QString portToolTip(const ListeningPort &port);

/// What stopping `port` will do: "Stop container (docker stop web)".
[[nodiscard]] QString stopActionTitle(const ListeningPort &port);

} // namespace tarnvale
