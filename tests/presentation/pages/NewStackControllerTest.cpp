#include "presentation/pages/NewStackController.h"

#include "presentation/pages/PagesTest.h"
#include "support/TemporaryFolder.h"

#include <QPromise>

#include <gmock/gmock.h>

#include <filesystem>
#include <unistd.h>

namespace tarnvale {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class NewStack : public PagesTest {
protected:
    NewStack() {
        start();
        sheet = std::make_unique<NewStackController>(*store, world.platform(), readProjectFolder);
    }

    void open() {
        sheet->open(folder.path());
        quiesce();
    }

    void add(const char *command) {
        sheet->setCustom(QString::fromUtf8(command));
        sheet->addCustom();
    }

    [[nodiscard]] std::vector<std::string> commands() const { return texts(sheet->suggestions(), "args"); }
    [[nodiscard]] std::vector<std::string> ticked() const {
        std::vector<std::string> result;
        for (int row = 0; row < sheet->suggestionCount(); ++row)
            if (role(sheet->suggestions(), row, "isTicked").toBool())
                result.push_back(role(sheet->suggestions(), row, "args").toString().toStdString());
        return result;
    }

    TemporaryFolder folder;
    std::unique_ptr<NewStackController> sheet;
};

TEST_F(NewStack, itOffersTheCommandsOfTheFolderWithTheBestOnesTicked) {
    folder.write("package.json", R"({"scripts": {"start": "x", "dev": "y"}})");
    folder.write("yarn.lock", "");
    folder.write("compose.yaml", "");
    open();
    EXPECT_TRUE(sheet->isOpen());
    EXPECT_EQ(sheet->heading(), QStringLiteral("Commands to start"));
    EXPECT_THAT(commands(), ElementsAre("yarn dev", "yarn start", "docker compose up"));
    EXPECT_THAT(texts(sheet->suggestions(), "source"),
                ElementsAre("package.json", "package.json", "Docker Compose"));
    EXPECT_THAT(ticked(), ElementsAre("yarn dev"));
    EXPECT_TRUE(sheet->canCreate());
}

TEST_F(NewStack, itIsNamedLikeTheFolder) {
    std::filesystem::create_directory(folder.path("my shop"));
    sheet->open(folder.path("my shop"));
    EXPECT_EQ(sheet->name(), QStringLiteral("my shop"));
    EXPECT_EQ(sheet->folder().toStdString(), folder.path("my shop"));
}

TEST_F(NewStack, aFolderThatTellsNothingAsksForACommand) {
    folder.write("README.md", "# Nothing to start");
    open();
    EXPECT_EQ(sheet->heading(), QStringLiteral("No start commands found — add your own:"));
    EXPECT_EQ(sheet->problem(), QString());
    EXPECT_FALSE(sheet->canCreate());
    sheet->create();
    EXPECT_TRUE(sheet->isOpen());
    EXPECT_THAT(store->stacks(), IsEmpty());

    add(" \tmake serve\t ");
    EXPECT_EQ(sheet->heading(), QStringLiteral("Commands to start"));
    EXPECT_THAT(ticked(), ElementsAre("make serve"));
    EXPECT_THAT(texts(sheet->suggestions(), "source"), ElementsAre("Custom"));
    EXPECT_EQ(sheet->custom(), QString());
    EXPECT_TRUE(sheet->canCreate());
}

TEST_F(NewStack, composeAloneStandsUnticked) {
    folder.write("compose.yaml", "");
    open();
    EXPECT_THAT(commands(), ElementsAre("docker compose up"));
    EXPECT_THAT(ticked(), IsEmpty());
    EXPECT_FALSE(sheet->canCreate());
}

TEST_F(NewStack, aCustomCommandThatIsThereIsTickedAndNotAdded) {
    folder.write("compose.yaml", "");
    open();
    int shownRow = -1;
    QObject::connect(sheet.get(), &NewStackController::customAdded, sheet.get(),
                     [&](int row) { shownRow = row; });
    add("docker compose up");
    EXPECT_THAT(commands(), ElementsAre("docker compose up"));
    EXPECT_THAT(ticked(), ElementsAre("docker compose up"));
    EXPECT_THAT(texts(sheet->suggestions(), "source"), ElementsAre("Docker Compose"));
    EXPECT_EQ(shownRow, 0);
}

TEST_F(NewStack, blanksAreNoCommand) {
    open();
    for (const char *blanks : {"", " ", "\t \t"}) {
        add(blanks);
        EXPECT_THAT(commands(), IsEmpty());
        EXPECT_EQ(sheet->custom(), QString::fromUtf8(blanks)) << "nothing is done, so the text stays";
    }
}

TEST_F(NewStack, withNothingTickedNothingCanBeCreated) {
    folder.write("Procfile", "web: npm start\nworker: node worker.js\n");
    open();
    EXPECT_THAT(ticked(), ElementsAre("npm start", "node worker.js"));
    sheet->setTicked(QStringLiteral("npm start"), false);
    EXPECT_TRUE(sheet->canCreate());
    sheet->setTicked(QStringLiteral("node worker.js"), false);
    EXPECT_FALSE(sheet->canCreate());
    sheet->setTicked(QStringLiteral("no such command"), true);
    EXPECT_FALSE(sheet->canCreate());
}

TEST_F(NewStack, theStackHasTheOrderOfTheList) {
    folder.write("Procfile", "a: first\nb: second\nc: third\n");
    open();
    for (const char *command : {"first", "second", "third"})
        sheet->setTicked(QLatin1String(command), false);
    for (const char *command : {"third", "first"})
        sheet->setTicked(QLatin1String(command), true);
    add("fourth");
    sheet->setName(QStringLiteral("  my shop "));
    sheet->create();
    EXPECT_FALSE(sheet->isOpen());
    ASSERT_THAT(store->stacks(), SizeIs(1));
    EXPECT_EQ(store->stacks().front().name, "my shop");
    EXPECT_THAT(store->stacks().front().commands,
                ElementsAre(Stack::Command{"first", folder.path()}, Stack::Command{"third", folder.path()},
                            Stack::Command{"fourth", folder.path()}));
}

TEST_F(NewStack, anEmptyNameBecomesTheFolders) {
    std::filesystem::create_directory(folder.path("shop"));
    sheet->open(folder.path("shop"));
    quiesce();
    add("make serve");
    sheet->setName(QStringLiteral(" "));
    sheet->create();
    ASSERT_THAT(store->stacks(), SizeIs(1));
    EXPECT_EQ(store->stacks().front().name, "shop");
}

TEST_F(NewStack, cancelSavesNothing) {
    folder.write("go.mod", "");
    open();
    sheet->cancel();
    EXPECT_FALSE(sheet->isOpen());
    EXPECT_THAT(store->stacks(), IsEmpty());
    sheet->create();
    EXPECT_THAT(store->stacks(), IsEmpty());
}

TEST_F(NewStack, anotherOpeningStartsAnew) {
    folder.write("go.mod", "");
    open();
    add("make serve");
    sheet->setCustom(QStringLiteral("half a comm"));
    sheet->cancel();
    TemporaryFolder other;
    sheet->open(other.path());
    quiesce();
    EXPECT_THAT(commands(), IsEmpty());
    EXPECT_EQ(sheet->custom(), QString());
    EXPECT_FALSE(sheet->canCreate());
}

TEST_F(NewStack, aFolderThatIsNotThereIsToldOf) {
    const std::string file = folder.write("file", "");
    for (const std::string &path : {folder.path("gone"), file}) {
        sheet->open(path);
        quiesce();
        EXPECT_EQ(sheet->problem(), QStringLiteral("Tarnvale can’t read this folder.")) << path;
        EXPECT_EQ(sheet->heading(), QStringLiteral("No start commands found — add your own:"));
    }
}

TEST_F(NewStack, aFolderWithoutRightsIsToldOf) {
    if (geteuid() == 0)
        GTEST_SKIP() << "root may read every folder";
    std::filesystem::create_directory(folder.path("closed"));
    std::filesystem::permissions(folder.path("closed"), std::filesystem::perms::none);
    sheet->open(folder.path("closed"));
    quiesce();
    EXPECT_EQ(sheet->problem(), QStringLiteral("Tarnvale can’t read this folder."));
    std::filesystem::permissions(folder.path("closed"), std::filesystem::perms::owner_all); // to go
}

TEST_F(NewStack, aHugePackageFileTellsNothing) {
    folder.write("package.json", R"({"scripts": {"dev": ")" + std::string(10'000'000, 'x') + R"("}})");
    folder.write("go.mod", "");
    open();
    EXPECT_THAT(commands(), ElementsAre("go run ."));
}

TEST_F(NewStack, manyFilesBesideMakeNoDifference) {
    constexpr int some = 2000;
    for (int number = 0; number < some; ++number)
        folder.write("file-" + std::to_string(number), "");
    folder.write("manage.py", "");
    open();
    EXPECT_THAT(commands(), ElementsAre("python3 manage.py runserver"));
}

TEST_F(NewStack, aProcfileOfThousandsOfLinesIsWithstood) {
    std::string lines;
    for (int number = 0; number < 20'000; ++number)
        lines += "a: run " + std::to_string(number) + "\n";
    folder.write("Procfile", lines);
    open();
    EXPECT_EQ(sheet->suggestionCount(), 20'000);
    sheet->setTicked(QStringLiteral("run 19999"), false);
    EXPECT_FALSE(role(sheet->suggestions(), 19'999, "isTicked").toBool());
}

TEST_F(NewStack, oddCommandsAreShownPlainAndSavedAsTheyAre) {
    folder.write("Procfile", "a: echo \x1b[31mred\n" + std::string("b: ") + std::string(5000, 'y') + "\n");
    open();
    EXPECT_EQ(commands()[0], "echo \uFFFD[31mred");
    EXPECT_THAT(commands()[1], SizeIs(400));
    sheet->create();
    ASSERT_THAT(store->stacks(), SizeIs(1));
    EXPECT_EQ(store->stacks().front().commands[0].args, "echo \x1b[31mred");
    EXPECT_THAT(store->stacks().front().commands[1].args, SizeIs(5000));
}

/// Folders whose reading takes as long as the test likes.
class SlowFolder : public PagesTest {
protected:
    SlowFolder() {
        start();
        sheet = std::make_unique<NewStackController>(*store, world.platform(), [this](const std::string &) {
            auto reading = std::make_shared<QPromise<FolderReading>>();
            reading->start();
            readings.push_back(reading);
            return reading->future();
        });
    }
    ~SlowFolder() override {
        for (std::size_t number = 0; number < readings.size(); ++number)
            finish(number, {});
        settle();
    }

    void finish(std::size_t number, FolderReading reading) {
        if (readings[number]->future().isFinished())
            return;
        readings[number]->addResult(std::move(reading));
        readings[number]->finish();
        settle();
    }

    [[nodiscard]] static FolderReading readingOf(const std::string &args) {
        return {.isReadable = true, .suggestions = {{args, "Test", true}}};
    }

    std::vector<std::shared_ptr<QPromise<FolderReading>>> readings;
    std::unique_ptr<NewStackController> sheet;
};

TEST_F(SlowFolder, theSheetIsThereAtOnceAndTellsOnlyOfALongWait) {
    sheet->open("/slow");
    EXPECT_TRUE(sheet->isOpen());
    EXPECT_EQ(sheet->heading(), QString());
    pass(199ms);
    EXPECT_EQ(sheet->heading(), QString());
    pass(1ms);
    EXPECT_EQ(sheet->heading(), QStringLiteral("Looking for start commands…"));
    finish(0, readingOf("npm start"));
    EXPECT_EQ(sheet->heading(), QStringLiteral("Commands to start"));
    EXPECT_TRUE(sheet->canCreate());
}

TEST_F(SlowFolder, aQuickReadingIsNeverSpokenOf) {
    sheet->open("/quick");
    finish(0, {.isReadable = true});
    pass(1s);
    EXPECT_EQ(sheet->heading(), QStringLiteral("No start commands found — add your own:"));
}

TEST_F(SlowFolder, commandsAddedMeanwhileStayBehindThoseOfTheFolder) {
    sheet->open("/slow");
    for (const char *command : {"npm start", "make watch"}) {
        sheet->setCustom(QLatin1String(command));
        sheet->addCustom();
    }
    finish(0, {.isReadable = true, .suggestions = {{"go run .", "Go", true}, {"npm start", "x", false}}});
    EXPECT_THAT(texts(sheet->suggestions(), "args"), ElementsAre("go run .", "npm start", "make watch"));
    EXPECT_THAT(texts(sheet->suggestions(), "isTicked"), ElementsAre("true", "true", "true"));
}

TEST_F(SlowFolder, whatAnEarlierFolderTellsIsDropped) {
    sheet->open("/one");
    sheet->cancel();
    sheet->open("/two");
    finish(0, readingOf("of one"));
    EXPECT_EQ(sheet->suggestionCount(), 0);
    finish(1, readingOf("of two"));
    EXPECT_THAT(texts(sheet->suggestions(), "args"), ElementsAre("of two"));
}

TEST_F(SlowFolder, aReadingMayEndAfterTheSheet) {
    sheet->open("/one");
    sheet->cancel();
    finish(0, readingOf("of one"));
    EXPECT_EQ(sheet->suggestionCount(), 0);
    sheet->open("/two");
    sheet.reset();
    finish(1, readingOf("of two"));
    EXPECT_THAT(store->stacks(), IsEmpty());
}

} // namespace
} // namespace tarnvale
