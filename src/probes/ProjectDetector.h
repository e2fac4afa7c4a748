#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

/// The commands that start a project, guessed from the files at the top of its folder. Nothing is run.
namespace tarnvale::ProjectDetector {

struct Suggestion {
    std::string args;         ///< a command line for a login shell in the project's folder
    std::string source;       ///< where it comes from: a file's name or a framework's
    bool recommended = false; ///< ticked from the start

    bool operator==(const Suggestion &) const = default;
};

/// From the name of a file that tells something ("package.json", "bin/dev") to its text. A file that is
/// there and can't be read, isn't UTF-8 or has 512,000 bytes or more has an empty text.
using Markers = std::map<std::string, std::string>;

/// The commands for the project in `folder`, best guesses first, each once. Blocks for the reading of at most
/// sixteen files.
[[nodiscard]] std::vector<Suggestion> suggestions(const std::string &folder);

/// The same for what has been read.
[[nodiscard]] std::vector<Suggestion> suggestions(const Markers &markers);

[[nodiscard]] Markers readMarkers(const std::string &folder);

/// The names under "scripts" in the JSON of a "package.json" or "composer.json"; none when there is no text
/// or it has another form.
[[nodiscard]] std::set<std::string> scriptNames(const std::optional<std::string> &json);

} // namespace tarnvale::ProjectDetector
