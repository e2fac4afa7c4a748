#include "discovery/parseLaunchdList.h"

#include "discovery/text.h"

namespace tarnvale {

// Sample rows, after a header line "PID<tab>Status<tab>Label"; a job that doesn't run has "-" for a pid:
//   "123<tab>0<tab>homebrew.mxcl.postgresql@16"
//   "-<tab>0<tab>com.example.job"
ServiceLabels parseLaunchdList(std::string_view text) {
    ServiceLabels labels;
    for (const std::string_view line : nonEmptyLines(text)) {
        auto pieces = split(line, '\t');
        std::erase_if(pieces, [](std::string_view piece) { return piece.empty(); });
        if (pieces.size() != 3)
            continue;
        const auto pid = parseInteger<Pid>(pieces[0]);
        const std::string_view label = pieces[2];
        if (pid && !label.starts_with("application.") && !label.starts_with("com.apple."))
            labels[*pid] = {std::string(label), ServiceManager::launchd};
    }
    return labels;
}

} // namespace tarnvale
