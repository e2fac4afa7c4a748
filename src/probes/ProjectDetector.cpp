#include "probes/ProjectDetector.h"

#include "discovery/text.h"
#include "probes/RegularFile.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <array>
#include <filesystem>
#include <unordered_set>
#include <utility>

namespace tarnvale::ProjectDetector {

namespace {

constexpr std::array<std::string_view, 16> markerNames{
    "package.json",       "composer.json", "Procfile",  "Procfile.dev", "artisan",
    "manage.py",          "Gemfile",       "bin/rails", "bin/dev",      "go.mod",
    "docker-compose.yml", "compose.yaml",  "bun.lockb", "bun.lock",     "pnpm-lock.yaml",
    "yarn.lock"};

bool isThere(const std::string &path) {
    std::error_code error;
    const auto status = std::filesystem::status(path, error);
    return std::filesystem::exists(status) && !std::filesystem::is_directory(status);
}

std::string readMarker(const std::string &path) {
    constexpr std::size_t largest = 511'999;
    const auto text = readRegularFile(path, largest);
    const bool isUtf8 = text && repairedUtf8(*text) == *text;
    return isUtf8 ? *text : std::string();
}

/// The length of the newline at the front of `text` (LF, VT, FF, CR, NEL, LS, PS); 0 when there is none.
std::size_t newlineLength(std::string_view text) {
    constexpr std::string_view singles = "\n\v\f\r";
    if (!text.empty() && singles.find(text.front()) != singles.npos)
        return 1;
    for (const std::string_view newline : {"\u0085", "\u2028", "\u2029"})
        if (text.starts_with(newline))
            return newline.size();
    return 0;
}

std::string_view takeLine(std::string_view &text) {
    std::size_t end = 0;
    while (end < text.size() && newlineLength(text.substr(end)) == 0)
        ++end;
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(end);
    text.remove_prefix(newlineLength(text));
    return line;
}

/// The command in a line of a Procfile; empty when it has none. Sample: "web: bundle exec puma -p $PORT"
std::string_view commandIn(std::string_view line) {
    constexpr std::string_view blanks = " \t";
    const std::size_t colon = line.find(':');
    if (line.starts_with('#') || colon == line.npos)
        return {};
    const std::size_t first = line.find_first_not_of(blanks, colon + 1);
    return first == line.npos ? std::string_view()
                              : line.substr(first, line.find_last_not_of(blanks) + 1 - first);
}

/// What starts a script of a "package.json", by the lock file that its package manager left.
std::string_view runnerPrefix(const Markers &markers) {
    struct Runner {
        const char *lockFile;
        std::string_view prefix;
    };
    static constexpr std::array runners{Runner{"bun.lockb", "bun run "}, Runner{"bun.lock", "bun run "},
                                        Runner{"pnpm-lock.yaml", "pnpm "}, Runner{"yarn.lock", "yarn "}};
    for (const Runner &runner : runners)
        if (markers.contains(runner.lockFile))
            return runner.prefix;
    return "npm run ";
}

std::optional<std::string> textOf(const Markers &markers, const std::string &name) {
    const auto found = markers.find(name);
    return found == markers.end() ? std::nullopt : std::optional(found->second);
}

/// The rules, in the order in which they run.
class Suggestions {
public:
    explicit Suggestions(const Markers &markers) : m_markers(markers) {
        addProcfile("Procfile.dev");
        addProcfile("Procfile");
        addScripts();
        addFrameworks();
    }

    [[nodiscard]] std::vector<Suggestion> take() { return std::move(m_list); }

private:
    void addProcfile(const std::string &name) {
        const std::string content = textOf(m_markers, name).value_or("");
        for (std::string_view rest = content; !rest.empty();)
            if (const std::string_view command = commandIn(takeLine(rest)); !command.empty())
                add(std::string(command), name, true);
    }

    /// A Laravel project with a page bundler needs both servers, so these rules don't look at each other.
    void addScripts() {
        const bool hasComposerDev = scriptNames(textOf(m_markers, "composer.json")).contains("dev");
        const bool noneAfterProcfiles = hasNoneRecommended();
        if (hasComposerDev)
            add("composer run dev", "composer.json", noneAfterProcfiles);
        if (has("artisan")) {
            add("php artisan serve", "Laravel", noneAfterProcfiles && !hasComposerDev);
            add("php artisan queue:work", "Laravel", false);
        }
        addPackageScripts(noneAfterProcfiles && !hasComposerDev);
    }

    void addPackageScripts(bool recommendsFirst) {
        const std::set<std::string> names = scriptNames(textOf(m_markers, "package.json"));
        const std::string prefix(runnerPrefix(m_markers));
        for (const char *name : {"dev", "start", "serve", "watch"})
            if (names.contains(name))
                add(prefix + name, "package.json", std::exchange(recommendsFirst, false));
    }

    void addFrameworks() {
        if (has("bin/dev"))
            add("bin/dev", "Rails", hasNoneRecommended());
        else if (has("bin/rails"))
            add("bin/rails server", "Rails", hasNoneRecommended());
        if (has("manage.py"))
            add("python3 manage.py runserver", "Django", hasNoneRecommended());
        if (has("go.mod"))
            add("go run .", "Go", hasNoneRecommended());
        if (has("docker-compose.yml") || has("compose.yaml"))
            add("docker compose up", "Docker Compose", false);
    }

    /// Of two with the same command line the first stands.
    void add(const std::string &args, const std::string &source, bool recommended) {
        if (m_known.insert(args).second)
            m_list.push_back({args, source, recommended});
    }

    [[nodiscard]] bool has(const std::string &name) const { return m_markers.contains(name); }
    [[nodiscard]] bool hasNoneRecommended() const {
        return std::ranges::none_of(m_list, &Suggestion::recommended);
    }

    const Markers &m_markers;
    std::vector<Suggestion> m_list;
    std::unordered_set<std::string> m_known;
};

} // namespace

std::vector<Suggestion> suggestions(const std::string &folder) {
    return suggestions(readMarkers(folder));
}

std::vector<Suggestion> suggestions(const Markers &markers) {
    return Suggestions(markers).take();
}

Markers readMarkers(const std::string &folder) {
    Markers markers;
    for (const std::string_view name : markerNames)
        if (const std::string path = folder + "/" + std::string(name); isThere(path))
            markers.emplace(name, readMarker(path));
    return markers;
}

// Sample: {"name": "shop", "scripts": {"dev": "vite", "build": "vite build"}}
std::set<std::string> scriptNames(const std::optional<std::string> &json) {
    std::set<std::string> names;
    const QByteArray bytes = QByteArray::fromStdString(json.value_or(""));
    const QJsonObject document = QJsonDocument::fromJson(bytes).object();
    for (const QString &key : document.value(QLatin1String("scripts")).toObject().keys())
        names.insert(key.toStdString());
    return names;
}

} // namespace tarnvale::ProjectDetector
