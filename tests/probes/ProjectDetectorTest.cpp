#include "probes/ProjectDetector.h"

#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <sys/stat.h>

namespace tarnvale::ProjectDetector {

static void PrintTo(const Suggestion &suggestion, std::ostream *stream) {
    *stream << "'" << suggestion.args << "' of " << suggestion.source << ", " << suggestion.recommended;
}

} // namespace tarnvale::ProjectDetector

namespace tarnvale {
namespace {

using ProjectDetector::Markers;
using ProjectDetector::readMarkers;
using ProjectDetector::scriptNames;
using ProjectDetector::Suggestion;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::SizeIs;

std::vector<Suggestion> suggest(const Markers &markers) {
    return ProjectDetector::suggestions(markers);
}

const std::string devScript = R"({"scripts": {"dev": "vite"}})";

TEST(ProjectDetectorTest, anEmptyFolderHasNone) {
    const TemporaryFolder folder;
    EXPECT_THAT(ProjectDetector::suggestions(folder.path()), IsEmpty());
    EXPECT_THAT(ProjectDetector::suggestions(folder.path("missing")), IsEmpty());
    EXPECT_THAT(suggest({}), IsEmpty());
}

TEST(ProjectDetectorTest, aProcfileIsRecommendedAndNothingElse) {
    EXPECT_THAT(
        suggest({{"Procfile", "web: npm start\nworker: node worker.js"}, {"package.json", devScript}}),
        ElementsAre(Suggestion{"npm start", "Procfile", true}, Suggestion{"node worker.js", "Procfile", true},
                    Suggestion{"npm run dev", "package.json", false}));
}

TEST(ProjectDetectorTest, linesOfAProcfile) {
    for (const auto &[line, command] : std::vector<std::pair<std::string, std::string>>{
             {"web: a: b", "a: b"},
             {"web:a", "a"},
             {"web: \t a b \t", "a b"},
             {"  # web: x", "x"},
             {": x", "x"},
             {"web: # x", "# x"},
             {"web: \u00A0x", "\u00A0x"},
         })
        EXPECT_THAT(suggest({{"Procfile", line}}), ElementsAre(Suggestion{command, "Procfile", true}))
            << line;
    for (const std::string line : {"release:", "release: \t ", "# web: x", "#", "web", "", ":", "\n\n"})
        EXPECT_THAT(suggest({{"Procfile", line}}), IsEmpty()) << line;
}

TEST(ProjectDetectorTest, everyNewlineEndsALine) {
    for (const std::string newline : {"\n", "\v", "\f", "\r", "\r\n", "\u0085", "\u2028", "\u2029", "\n\n"})
        EXPECT_THAT(suggest({{"Procfile", "a: x" + newline + "b: y" + newline}}),
                    ElementsAre(Suggestion{"x", "Procfile", true}, Suggestion{"y", "Procfile", true}));
}

TEST(ProjectDetectorTest, theDevelopmentProcfileComesFirst) {
    EXPECT_THAT(suggest({{"Procfile", "web: x\njob: y"}, {"Procfile.dev", "app: z\nserver: x"}}),
                ElementsAre(Suggestion{"z", "Procfile.dev", true}, Suggestion{"x", "Procfile.dev", true},
                            Suggestion{"y", "Procfile", true}));
}

TEST(ProjectDetectorTest, aComposerScriptStandsForTheWholeProject) {
    EXPECT_THAT(suggest({{"composer.json", devScript}, {"artisan", ""}, {"package.json", devScript}}),
                ElementsAre(Suggestion{"composer run dev", "composer.json", true},
                            Suggestion{"php artisan serve", "Laravel", false},
                            Suggestion{"php artisan queue:work", "Laravel", false},
                            Suggestion{"npm run dev", "package.json", false}));
    EXPECT_THAT(suggest({{"composer.json", devScript}, {"Procfile", "w: x"}}),
                ElementsAre(Suggestion{"x", "Procfile", true},
                            Suggestion{"composer run dev", "composer.json", false}));
}

TEST(ProjectDetectorTest, laravelAndItsBundlerAreBothRecommended) {
    EXPECT_THAT(suggest({{"artisan", ""}, {"composer.json", "{}"}, {"package.json", devScript}}),
                ElementsAre(Suggestion{"php artisan serve", "Laravel", true},
                            Suggestion{"php artisan queue:work", "Laravel", false},
                            Suggestion{"npm run dev", "package.json", true}));
}

TEST(ProjectDetectorTest, fourScriptsCountAndTheFirstIsRecommended) {
    const std::string scripts =
        R"({"scripts": {"watch": "", "build": "", "serve": 1, "start": null, "test": ""}})";
    EXPECT_THAT(suggest({{"package.json", scripts}}),
                ElementsAre(Suggestion{"npm run start", "package.json", true},
                            Suggestion{"npm run serve", "package.json", false},
                            Suggestion{"npm run watch", "package.json", false}));
}

TEST(ProjectDetectorTest, aScriptThatIsKnownAlreadyHandsNothingOn) {
    const std::string scripts = R"({"scripts": {"dev": "", "start": ""}})";
    EXPECT_THAT(suggest({{"package.json", scripts}, {"Procfile", "web: npm run dev"}}),
                ElementsAre(Suggestion{"npm run dev", "Procfile", true},
                            Suggestion{"npm run start", "package.json", false}));
}

TEST(ProjectDetectorTest, theLockFileTellsTheRunner) {
    for (const auto &[lockFiles, args] : std::vector<std::pair<std::vector<std::string>, std::string>>{
             {{}, "npm run dev"},
             {{"bun.lockb"}, "bun run dev"},
             {{"bun.lock"}, "bun run dev"},
             {{"pnpm-lock.yaml"}, "pnpm dev"},
             {{"yarn.lock"}, "yarn dev"},
             {{"bun.lock", "yarn.lock"}, "bun run dev"},
             {{"pnpm-lock.yaml", "yarn.lock"}, "pnpm dev"},
         }) {
        Markers markers{{"package.json", devScript}};
        for (const std::string &name : lockFiles)
            markers[name] = "";
        EXPECT_THAT(suggest(markers), ElementsAre(Suggestion{args, "package.json", true}));
    }
}

TEST(ProjectDetectorTest, lockFilesAloneAddNothing) {
    for (const std::string text : {"", R"({"scripts": []})", "{not json"})
        EXPECT_THAT(suggest({{"package.json", text}, {"yarn.lock", ""}}), IsEmpty());
}

TEST(ProjectDetectorTest, railsHasOneCommand) {
    EXPECT_THAT(suggest({{"bin/dev", ""}, {"bin/rails", ""}, {"Gemfile", "x"}}),
                ElementsAre(Suggestion{"bin/dev", "Rails", true}));
    EXPECT_THAT(suggest({{"bin/rails", ""}}), ElementsAre(Suggestion{"bin/rails server", "Rails", true}));
    EXPECT_THAT(suggest({{"Procfile", "web: bin/dev"}, {"bin/dev", ""}}),
                ElementsAre(Suggestion{"bin/dev", "Procfile", true}));
}

TEST(ProjectDetectorTest, laterGuessesAreRecommendedOnlyWhenNoneIsYet) {
    EXPECT_THAT(suggest({{"manage.py", ""}}),
                ElementsAre(Suggestion{"python3 manage.py runserver", "Django", true}));
    EXPECT_THAT(suggest({{"manage.py", ""}, {"package.json", devScript}}),
                ElementsAre(Suggestion{"npm run dev", "package.json", true},
                            Suggestion{"python3 manage.py runserver", "Django", false}));
    EXPECT_THAT(suggest({{"manage.py", ""}, {"go.mod", ""}, {"bin/rails", ""}}),
                ElementsAre(Suggestion{"bin/rails server", "Rails", true},
                            Suggestion{"python3 manage.py runserver", "Django", false},
                            Suggestion{"go run .", "Go", false}));
    EXPECT_THAT(suggest({{"go.mod", ""}}), ElementsAre(Suggestion{"go run .", "Go", true}));
}

TEST(ProjectDetectorTest, containersAreNeverRecommended) {
    const auto one = ElementsAre(Suggestion{"docker compose up", "Docker Compose", false});
    EXPECT_THAT(suggest({{"compose.yaml", ""}}), one);
    EXPECT_THAT(suggest({{"docker-compose.yml", ""}}), one);
    EXPECT_THAT(suggest({{"docker-compose.yml", ""}, {"compose.yaml", ""}}), one);
}

TEST(ProjectDetectorTest, aGemfileAloneTellsNothing) {
    EXPECT_THAT(suggest({{"Gemfile", "gem 'rails'"}}), IsEmpty());
}

TEST(ScriptNamesTest, keysAreNamesWhateverTheirValues) {
    EXPECT_THAT(scriptNames(R"({"scripts": {"b": 1, "a": null, "é": ""}})"), ElementsAre("a", "b", "é"));
}

TEST(ScriptNamesTest, everythingElseIsEmpty) {
    EXPECT_THAT(scriptNames(std::nullopt), IsEmpty());
    for (const std::string &json :
         std::vector<std::string>{"", "null", "[]", "{}", R"({"scripts": []})", R"({"scripts": "dev"})",
                                  R"([{"scripts": {"dev": ""}}])", R"({"scripts": {"dev": ""}} x)",
                                  R"({"scripts": {"dev": )", "\xFF", std::string(100'000, '{')})
        EXPECT_THAT(scriptNames(json), IsEmpty()) << json.substr(0, 40);
}

TEST(ReadMarkersTest, sixteenNamesAreLookedAt) {
    const TemporaryFolder folder;
    for (const char *name :
         {"package.json", "composer.json", "Procfile", "Procfile.dev", "artisan", "manage.py", "Gemfile",
          "bin/rails", "bin/dev", "go.mod", "docker-compose.yml", "compose.yaml", "bun.lockb", "bun.lock",
          "pnpm-lock.yaml", "yarn.lock", "README.md", "Makefile"})
        folder.write(name, name);
    const Markers markers = readMarkers(folder.path());
    EXPECT_THAT(markers, SizeIs(16));
    for (const auto &[name, text] : markers)
        EXPECT_EQ(text, name);
}

TEST(ReadMarkersTest, aFolderOfThatNameIsNoMarker) {
    const TemporaryFolder folder;
    std::filesystem::create_directory(folder.path("Procfile"));
    std::filesystem::create_symlink("nowhere", folder.path("artisan"));
    EXPECT_THAT(readMarkers(folder.path()), IsEmpty());
}

TEST(ReadMarkersTest, whatCannotBeReadIsThereWithoutText) {
    using namespace std::string_literals;
    const TemporaryFolder folder;
    folder.write("package.json", std::string(512'000, ' '));
    folder.write("composer.json", std::string(511'999, ' '));
    folder.write("manage.py", "caf\xE9");
    folder.write("go.mod", "");
    ASSERT_EQ(mkfifo(folder.path("Procfile").c_str(), 0600), 0);
    std::filesystem::create_symlink("/dev/zero", folder.path("Gemfile"));
    EXPECT_THAT(readMarkers(folder.path()),
                ElementsAre(Pair("Gemfile", ""), Pair("Procfile", ""), Pair("composer.json", SizeIs(511'999)),
                            Pair("go.mod", ""), Pair("manage.py", ""), Pair("package.json", "")));
}

TEST(ReadMarkersTest, aProjectIsSuggestedFromItsFolder) {
    const TemporaryFolder folder;
    folder.write("package.json", devScript);
    folder.write("pnpm-lock.yaml", "");
    EXPECT_THAT(ProjectDetector::suggestions(folder.path()),
                ElementsAre(Suggestion{"pnpm dev", "package.json", true}));
}

} // namespace
} // namespace tarnvale
