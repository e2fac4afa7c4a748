// The sheet for a new stack, over its page, from the choice of a folder to the saved stack.

#include "presentation/pages/PageScene.h"
#include "support/TemporaryFolder.h"

#include <QTest>

#include <gmock/gmock.h>

namespace tarnvale {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsSupersetOf;
using testing::SizeIs;

class NewStackScreen : public testing::Test {
protected:
    void open() {
        scene.showStacks();
        scene.folderToChoose = folder.path();
        scene.click(scene.find("PushButton", QStringLiteral("New from Folder…")));
    }

    [[nodiscard]] QQuickItem *field(const char *label) const {
        for (QQuickItem *item : scene.findAll("TextField"))
            if (item->property("label").toString() == QLatin1String(label))
                return item;
        return nullptr;
    }

    [[nodiscard]] bool isOpen() const { return scene.stacks->newStack()->isOpen(); }

    TemporaryFolder folder;
    PageScene scene{"few"};
    const char *const another = "Another command, e.g. php artisan horizon";
};

TEST_F(NewStackScreen, aCancelledChoiceShowsNoSheet) {
    scene.showStacks();
    scene.click(scene.find("PushButton", QStringLiteral("New from Folder…")));
    EXPECT_EQ(scene.find("NewStackSheet"), nullptr);
}

TEST_F(NewStackScreen, itShowsWhatTheFolderOffers) {
    folder.write("package.json", R"({"scripts": {"dev": "vite"}})");
    folder.write("compose.yaml", "");
    open();
    EXPECT_THAT(
        scene.texts(),
        IsSupersetOf({QStringLiteral("New Stack"), QString::fromStdString(folder.path()),
                      QStringLiteral("Name"), QStringLiteral("Commands to start"),
                      QStringLiteral("npm run dev"), QStringLiteral("package.json"),
                      QStringLiteral("docker compose up"), QStringLiteral("Docker Compose"),
                      QStringLiteral("Commands run in a login shell from the project folder; output goes "
                                     "to Tarnvale's logs."),
                      QStringLiteral("Cancel"), QStringLiteral("Create Stack")}));
    const auto boxes = scene.findAll("CheckBox");
    ASSERT_THAT(boxes, SizeIs(2));
    EXPECT_TRUE(boxes[0]->property("checked").toBool());
    EXPECT_FALSE(boxes[1]->property("checked").toBool());
    EXPECT_EQ(scene.find("NewStackSheet")->width(), 520);
    EXPECT_EQ(scene.warnings(), "");
}

TEST_F(NewStackScreen, anEmptyFolderNeedsACommandFirst) {
    open();
    EXPECT_THAT(scene.texts(), Contains(QStringLiteral("No start commands found — add your own:")));
    const QQuickItem *create = scene.find("PushButton", QStringLiteral("Create Stack"));
    EXPECT_FALSE(create->isEnabled());
    scene.click(field(another));
    scene.type(QStringLiteral("make serve"));
    scene.press(Qt::Key_Return);
    EXPECT_TRUE(isOpen()) << "Return in the field adds";
    EXPECT_THAT(scene.texts(), Contains(QStringLiteral("make serve")));
    EXPECT_EQ(field(another)->property("text").toString(), QString());
    EXPECT_TRUE(create->isEnabled());
    scene.click(create);
    EXPECT_FALSE(isOpen());
    ASSERT_THAT(scene.store->stacks(), SizeIs(1));
    EXPECT_THAT(scene.store->stacks().front().commands,
                ElementsAre(Stack::Command{"make serve", folder.path()}));
    EXPECT_EQ(scene.find("NewStackSheet"), nullptr);
    EXPECT_THAT(scene.texts(), Contains(QStringLiteral("0 of 1 running")));
}

TEST_F(NewStackScreen, addByItsButton) {
    open();
    scene.click(field(another));
    scene.type(QStringLiteral("a"));
    scene.click(scene.find("PushButton", QStringLiteral("Add")));
    scene.click(field(another));
    scene.type(QStringLiteral("b"));
    scene.click(scene.find("PushButton", QStringLiteral("Add")));
    EXPECT_THAT(scene.findAll("SuggestionLine"), SizeIs(2));
}

TEST_F(NewStackScreen, theNameIsReadyToBeTypedOverAndReturnCreates) {
    folder.write("go.mod", "");
    open();
    scene.type(QStringLiteral("backend"));
    scene.press(Qt::Key_Return);
    ASSERT_THAT(scene.store->stacks(), SizeIs(1));
    EXPECT_EQ(scene.store->stacks().front().name, "backend");
}

TEST_F(NewStackScreen, escapeSavesNothing) {
    folder.write("go.mod", "");
    open();
    scene.press(Qt::Key_Escape);
    EXPECT_FALSE(isOpen());
    EXPECT_THAT(scene.store->stacks(), IsEmpty());
}

TEST_F(NewStackScreen, cancelSavesNothing) {
    folder.write("go.mod", "");
    open();
    scene.click(scene.find("PushButton", QStringLiteral("Cancel")));
    EXPECT_FALSE(isOpen());
    EXPECT_THAT(scene.store->stacks(), IsEmpty());
}

TEST_F(NewStackScreen, untickingAllDisablesCreate) {
    folder.write("Procfile", "a: one\nb: two\n");
    open();
    const QQuickItem *create = scene.find("PushButton", QStringLiteral("Create Stack"));
    scene.click(scene.findAll("CheckBox")[0]);
    EXPECT_TRUE(create->isEnabled());
    scene.click(scene.findAll("SuggestionLine")[1]); // the line counts as its box
    EXPECT_FALSE(create->isEnabled());
    scene.click(scene.findAll("SuggestionLine")[1]);
    EXPECT_TRUE(create->isEnabled());
}

TEST_F(NewStackScreen, aLongListScrollsToWhatIsAdded) {
    std::string lines;
    for (int number = 0; number < 60; ++number)
        lines += "a: run " + std::to_string(number) + "\n";
    folder.write("Procfile", lines);
    open();
    EXPECT_LT(scene.find("NewStackSheet")->height(), scene.view.height());
    scene.click(field(another));
    scene.type(QStringLiteral("the last one"));
    scene.press(Qt::Key_Return);
    EXPECT_THAT(scene.texts(), Contains(QStringLiteral("the last one")));
}

TEST_F(NewStackScreen, aLowWindowKeepsTheButtonsInSight) {
    folder.write("Procfile", "a: 1\nb: 2\nc: 3\nd: 4\ne: 5\nf: 6\ng: 7\nh: 8\n");
    scene.resize(560, 400);
    open();
    const QQuickItem *create = scene.find("PushButton", QStringLiteral("Create Stack"));
    ASSERT_NE(create, nullptr);
    EXPECT_LT(create->mapToScene(QPointF(0, create->height())).y(), 400);
    const QQuickItem *sheet = scene.find("NewStackSheet");
    EXPECT_GE(sheet->mapToScene(QPointF()).x(), 0);
    EXPECT_LE(sheet->mapToScene(QPointF(sheet->width(), 0)).x(), 560);
    EXPECT_EQ(scene.warnings(), "");
}

TEST_F(NewStackScreen, aFolderThatCannotBeReadSaysSo) {
    scene.showStacks();
    scene.folderToChoose = folder.path("gone");
    scene.click(scene.find("PushButton", QStringLiteral("New from Folder…")));
    EXPECT_THAT(scene.texts(), Contains(QStringLiteral("Tarnvale can’t read this folder.")));
}

TEST_F(NewStackScreen, theKeyboardReachesAllOfIt) {
    folder.write("go.mod", "");
    open();
    QStringList names;
    for (int tabs = 0; tabs < 5; ++tabs) {
        scene.press(Qt::Key_Tab);
        const QQuickItem *item = scene.view.activeFocusItem();
        ASSERT_NE(item, nullptr);
        names.append(item->property("title").isValid() ? item->property("title").toString()
                                                       : item->parentItem()->property("label").toString());
    }
    EXPECT_THAT(names, ElementsAre(QStringLiteral("go run ."), QLatin1String(another), QStringLiteral("Add"),
                                   QStringLiteral("Cancel"), QStringLiteral("Create Stack")));
}

} // namespace
} // namespace tarnvale
