#include "discovery/artisan.h"

#include "discovery/text.h"

namespace tarnvale {

bool isArtisanServe(std::string_view args) {
    if (args.find("artisan") == args.npos)
        return false; // hardly any is one, and this is asked of every parent
    bool isAfterArtisan = false;
    for (std::string_view word = takeWord(args); !word.empty(); word = takeWord(args)) {
        if (isAfterArtisan && word == "serve")
            return true;
        isAfterArtisan = word.ends_with("artisan");
    }
    return false;
}

ArtisanMap artisanParents(const ProcessDetailsMap &details, const ProcessDetailsMap &parents) {
    ArtisanMap result;
    for (const auto &[pid, process] : details) {
        const auto parent = parents.find(process.ppid);
        if (parent != parents.end() && isArtisanServe(parent->second.args))
            result[pid] = {process.ppid, parent->second};
    }
    return result;
}

} // namespace tarnvale
