// The folders under src/ are the rooms of a house with four floors. An include runs down, or stays in its
// room; between rooms of one floor only the arrows named here are allowed. The link graph enforces most of
// this; here it is checked for headers too, and for how much of Qt a room may know.

#include "discovery/text.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <optional>
#include <set>

namespace tarnvale {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

const std::map<std::string, int> floors{{"discovery", 1},    {"platform", 1}, {"probes", 1},
                                        {"updates", 1},      {"store", 2},    {"commands", 3},
                                        {"presentation", 3}, {"app", 4},      {"preview-renderer", 4}};
const std::set<std::pair<std::string, std::string>> sameFloor{
    {"platform", "discovery"}, {"probes", "discovery"},     {"probes", "platform"}, {"updates", "discovery"},
    {"updates", "platform"},   {"presentation", "commands"}}; // the hot key's record and its recording

/// What the command line is made of: it starts without Qt.
const std::vector<std::string> foldersWithoutQt{"discovery/", "platform/process/", "commands/"};
/// But for these, which are parts of the application.
const std::vector<std::string> foldersWithQt{"commands/hotkey/", "commands/automation/"};
const std::set<std::string> roomsWithScreens{"presentation", "app", "preview-renderer"};

struct Include {
    std::string name;
    bool isOurs = false; ///< in quotes
};

/// From the path of a source file below src/ to its text.
using Sources = std::map<std::string, std::string>;

/// The include in a line such as `  #  include "store/PortStore.h"`.
std::optional<Include> includeIn(std::string_view line) {
    for (const std::string_view part : {"#", "include"}) {
        line.remove_prefix(leadingWhitespace(line));
        if (!line.starts_with(part))
            return std::nullopt;
        line.remove_prefix(part.size());
    }
    line.remove_prefix(leadingWhitespace(line));
    if (!line.starts_with('"') && !line.starts_with('<'))
        return std::nullopt;
    const bool isOurs = line.front() == '"';
    line.remove_prefix(1);
    return Include{std::string(line.substr(0, line.find(isOurs ? '"' : '>'))), isOurs};
}

std::vector<Include> includesOf(const std::string &text) {
    std::vector<Include> includes;
    for (const std::string_view line : nonEmptyLines(text))
        if (auto include = includeIn(line))
            includes.push_back(std::move(*include));
    return includes;
}

std::string roomOf(const std::string &path) {
    return path.substr(0, path.find('/'));
}

/// "QString", "QtCore/QString", "qobject.h" or "qtimer.h", but not "queue".
bool isQt(std::string_view name) {
    const bool isClass =
        name.size() > 1 && name[0] == 'Q' && ((name[1] >= 'A' && name[1] <= 'Z') || name[1] == 't');
    return isClass || (name.starts_with('q') && name.ends_with(".h"));
}

/// The header belongs to Qt's windows, pictures or QML. These are the ones written first; a name that is
/// missing here is still not found by the compiler, since the room doesn't link its library.
bool isScreenQt(std::string_view name) {
    static const std::set<std::string, std::less<>> names{
        "QAction",          "QApplication", "QBrush",    "QClipboard",   "QColor",          "QCursor",
        "QDesktopServices", "QDialog",      "QFont",     "QFontMetrics", "QGuiApplication", "QIcon",
        "QImage",           "QJSValue",     "QKeyEvent", "QKeySequence", "QLabel",          "QMenu",
        "QPainter",         "QPalette",     "QPen",      "QPixmap",      "QScreen",         "QStyleHints",
        "QSystemTrayIcon",  "QWidget",      "QWindow"};
    static const std::vector<std::string_view> beginnings{"QtGui", "QtWidgets",   "QtQuick",   "QtQml",
                                                          "QtSvg", "QtWebEngine", "QQuick",    "QQml",
                                                          "QSG",   "QSvg",        "QWebEngine"};
    const auto begins = [name](std::string_view beginning) { return name.starts_with(beginning); };
    return names.contains(name) || std::any_of(beginnings.begin(), beginnings.end(), begins);
}

bool isBelow(std::string_view path, const std::vector<std::string> &folders) {
    return std::any_of(folders.begin(), folders.end(),
                       [path](const std::string &folder) { return path.starts_with(folder); });
}

bool doesWithoutQt(std::string_view path) {
    return isBelow(path, foldersWithoutQt) && !isBelow(path, foldersWithQt);
}

std::optional<std::string> complaintAboutOutside(const std::string &path, const std::string &name) {
    if (doesWithoutQt(path) && isQt(name))
        return roomOf(path) + " does without Qt";
    if (!roomsWithScreens.contains(roomOf(path)) && isScreenQt(name))
        return roomOf(path) + " knows no screen";
    return std::nullopt;
}

std::optional<std::string> complaintAboutOurs(const std::string &path, const std::string &name) {
    if (!name.contains('/'))
        return "an include names its room";
    const std::string room = roomOf(path);
    const std::string target = roomOf(name);
    if (!floors.contains(target))
        return "there is no room " + target;
    if (target != room && floors.at(target) >= floors.at(room) && !sameFloor.contains({room, target}))
        return room + " must not know " + target;
    if (doesWithoutQt(path) && !doesWithoutQt(name))
        return path + " would reach Qt through " + target;
    return std::nullopt;
}

/// What is wrong with one include of the file at `path`; nothing when it is fine.
std::optional<std::string> complaint(const std::string &path, const Include &include) {
    return include.isOurs ? complaintAboutOurs(path, include.name)
                          : complaintAboutOutside(path, include.name);
}

std::vector<std::string> complaints(const Sources &sources) {
    std::vector<std::string> result;
    for (const auto &[path, text] : sources) {
        const std::string room = roomOf(path);
        if (!floors.contains(room)) {
            result.push_back(path + ": the room stands on no floor");
            continue;
        }
        for (const Include &include : includesOf(text))
            if (const auto reason = complaint(path, include))
                result.push_back(path + ": " + include.name + ": " + *reason);
    }
    return result;
}

/// The rooms that `room` includes, of those in `sources`.
std::map<std::string, std::set<std::string>> arrows(const Sources &sources) {
    std::map<std::string, std::set<std::string>> result;
    for (const auto &[path, text] : sources)
        for (const Include &include : includesOf(text))
            if (include.isOurs && roomOf(include.name) != roomOf(path))
                result[roomOf(path)].insert(roomOf(include.name));
    return result;
}

/// Rooms from which the arrows lead back to themselves.
std::vector<std::string> roomsInCycles(const Sources &sources) {
    const auto graph = arrows(sources);
    std::vector<std::string> result;
    for (const auto &[room, targets] : graph) {
        std::set<std::string> reached;
        std::vector<std::string> open(targets.begin(), targets.end());
        while (!open.empty()) {
            const std::string next = open.back();
            open.pop_back();
            if (reached.insert(next).second && graph.contains(next))
                open.insert(open.end(), graph.at(next).begin(), graph.at(next).end());
        }
        if (reached.contains(room))
            result.push_back(room);
    }
    return result;
}

Sources ourSources() {
    const std::filesystem::path root = std::filesystem::path(TARNVALE_TESTS_FOLDER).parent_path() / "src";
    static const std::set<std::string> endings{".h", ".cpp", ".inl", ".mm", ".hpp", ".c"};
    Sources sources;
    for (const auto &entry : std::filesystem::recursive_directory_iterator(root))
        if (entry.is_regular_file() && endings.contains(entry.path().extension()))
            sources[entry.path().lexically_relative(root)] = readFile(entry.path());
    return sources;
}

TEST(LayersTest, noIncludeRunsUpTheHouse) {
    const Sources sources = ourSources();
    ASSERT_GT(sources.size(), 50u);
    EXPECT_THAT(complaints(sources), IsEmpty());
}

TEST(LayersTest, noRoomsIncludeEachOther) {
    EXPECT_THAT(roomsInCycles(ourSources()), IsEmpty());
}

TEST(LayersTest, everyKindOfWrongArrowIsSeen) {
    struct Row {
        std::string path;
        std::string line;
        std::string reason;
    };
    const std::vector<Row> rows{
        {"discovery/a.h", "#include <QString>", "does without Qt"},
        {"discovery/a.h", "  #  include <QtCore/qglobal.h>", "does without Qt"},
        {"discovery/linux/a.cpp", "#include <qobject.h>", "does without Qt"},
        {"discovery/a.h", "#include \"platform/process/P.h\"", "must not know platform"},
        {"discovery/a.h", "#include \"store/S.h\"", "must not know store"},
        {"platform/process/a.h", "#include <QObject>", "does without Qt"},
        {"commands/a.h", "#include <QString>", "does without Qt"},
        {"commands/a.h", "#include \"platform/Desktop.h\"", "would reach Qt through platform"},
        {"commands/a.h", "#include \"store/S.h\"", "would reach Qt through store"},
        {"platform/process/a.h", "#include \"platform/Clock.h\"", "would reach Qt through platform"},
        {"platform/a.h", "#include <QIcon>", "knows no screen"},
        {"platform/linux/a.cpp", "#include <QtGui/QIcon>", "knows no screen"},
        {"probes/a.h", "#include <QImage>", "knows no screen"},
        {"store/a.h", "#include <QtWidgets>", "knows no screen"},
        {"store/a.h", "#include <QQmlEngine>", "knows no screen"},
        {"store/a.h", "#include <QSGNode>", "knows no screen"},
        {"discovery/a.h", "#include \"probes/P.h\"", "must not know probes"},
        {"probes/a.h", "#include \"store/S.h\"", "must not know store"},
        {"store/a.h", "#include \"commands/C.h\"", "must not know commands"},
        {"platform/a.h", "#include \"probes/P.h\"", "must not know probes"},
        {"store/a.h", "#include \"presentation/P.h\"", "must not know presentation"},
        {"commands/a.h", "#include \"presentation/P.h\"", "must not know presentation"},
        {"commands/hotkey/a.h", "#include <QKeyEvent>", "knows no screen"},
        {"commands/automation/a.h", "#include \"presentation/P.h\"", "must not know presentation"},
        {"presentation/a.h", "#include \"app/P.h\"", "must not know app"},
        {"store/a.h", "#include \"S.h\"", "names its room"},
        {"store/a.h", "#include \"../app/S.h\"", "no room .."},
        {"attic/a.h", "int x;", "stands on no floor"},
    };
    for (const Row &row : rows)
        EXPECT_THAT(complaints({{row.path, "#pragma once\n" + row.line + "\nint x;\n"}}),
                    ElementsAre(HasSubstr(row.reason)))
            << row.path << " " << row.line;
}

TEST(LayersTest, arrowsThatRunDownAreFine) {
    EXPECT_THAT(complaints({{"discovery/a.h",
                             "#include <queue>\n#include <sys/types.h>\n#include \"discovery/b.h\"\n"},
                            {"platform/a.h", "#include <QObject>\n#include \"discovery/b.h\"\n"},
                            {"platform/b.h", "#include \"platform/process/b.h\"\n"},
                            {"platform/process/b.h", "#include \"discovery/b.h\"\n"},
                            {"probes/a.h", "#include <QTcpSocket>\n#include \"discovery/b.h\"\n"
                                           "#include \"platform/b.h\"\n"},
                            {"store/a.h", "#include \"probes/b.h\"\n#include \"platform/b.h\"\n"},
                            {"commands/a.h", "#include \"platform/process/b.h\"\n// #include \"app/b.h\"\n"},
                            {"presentation/a.h", "#include <QQmlEngine>\n#include <QColor>\n"
                                                 "#include \"store/b.h\"\n"},
                            {"commands/hotkey/a.h", "#include <QObject>\n#include \"platform/Clock.h\"\n"},
                            {"presentation/b.h", "#include \"commands/hotkey/b.h\"\n"},
                            {"app/a.cpp", "#include \"commands/b.h\"\n#include \"presentation/b.h\"\n"}}),
                IsEmpty());
}

TEST(LayersTest, cyclesOfRoomsAreSeen) {
    EXPECT_THAT(roomsInCycles({{"a/x.h", "#include \"b/x.h\"\n"},
                               {"b/x.h", "#include \"c/x.h\"\n"},
                               {"c/x.h", "#include \"a/y.h\"\n#include \"d/x.h\"\n"},
                               {"d/x.h", "#include \"d/y.h\"\n"}}),
                ElementsAre("a", "b", "c"));
}

} // namespace
} // namespace tarnvale
