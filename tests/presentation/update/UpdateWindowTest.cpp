// The real window of updates: what it says in each phase, and what its buttons and keys do.

#include "presentation/update/UpdateScene.h"

#include "platform/background.h"

#include <QCoreApplication>
#include <QImage>
#include <QKeyEvent>

#include <gmock/gmock.h>

namespace tarnvale {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Phase = UpdateState::Phase;

bool says(const UpdateScene &scene, const char *text) {
    return scene.texts().contains(QString::fromUtf8(text));
}

/// Everything lies in the window, and no part of the lowest row on another.
void expectNoOverlap(UpdateScene &scene) {
    scene.draw();
    const QRectF all(QPointF(), QSizeF(scene.window->window()->size()));
    std::vector<QQuickItem *> parts;
    for (const char *type : {"LinkButton", "PushButton", "UpdateNotes", "SymbolTile"})
        for (QQuickItem *part : scene.findAll(type))
            parts.push_back(part);
    const auto frame = [](const QQuickItem *item) { return item->mapRectToScene(item->boundingRect()); };
    for (std::size_t i = 0; i < parts.size(); ++i) {
        EXPECT_TRUE(all.contains(frame(parts[i]))) << parts[i]->metaObject()->className();
        for (std::size_t k = 0; k < i; ++k)
            EXPECT_FALSE(frame(parts[i]).intersects(frame(parts[k])))
                << parts[i]->metaObject()->className() << " on " << parts[k]->metaObject()->className();
    }
    const auto notes = scene.findAll("UpdateNotes");
    ASSERT_EQ(notes.size(), 1u);
    EXPECT_GT(notes[0]->height(), 60);
}

TEST(UpdateWindow, aCheckUnderWayCanBeCancelled) {
    UpdateScene scene;
    EXPECT_FALSE(scene.window->isOpen());
    scene.check();
    EXPECT_TRUE(scene.window->isOpen());
    EXPECT_TRUE(says(scene, "Checking for updates…"));
    EXPECT_THAT(scene.buttons(), ElementsAre("Cancel"));
    scene.click("Cancel");
    EXPECT_FALSE(scene.window->isOpen());
    EXPECT_EQ(scene.window->window(), nullptr) << "nothing is kept";
    EXPECT_EQ(scene.checker->state().phase, Phase::idle);
    EXPECT_EQ(scene.warnings(), "");
}

TEST(UpdateWindow, theNewestVersionIsToldSo) {
    UpdateScene scene;
    scene.check();
    scene.answer({.version = "1.0"});
    EXPECT_TRUE(says(scene, "Tarnvale 1.0 is the newest version."));
    EXPECT_THAT(scene.buttons(), ElementsAre("OK"));
    EXPECT_EQ(scene.focusedTitle(), "OK");
    scene.press(Qt::Key_Return);
    EXPECT_FALSE(scene.window->isOpen());
    EXPECT_EQ(scene.warnings(), "");
}

TEST(UpdateWindow, aNewVersionIsShownWithItsNotes) {
    UpdateScene scene;
    scene.check();
    auto item = scene.item();
    item.notes = "<h2>New</h2><p>All <b>faster</b></p><img src=\"https://spy.example/x.png\">";
    scene.answer(item);
    EXPECT_TRUE(says(scene, "Tarnvale 2.0 is available"));
    EXPECT_TRUE(says(scene, "You have 1.0. The download takes 2.0 MB."));
    EXPECT_TRUE(says(scene, "New\n\nAll faster"));
    EXPECT_THAT(scene.buttons(), ElementsAre("Later", "Download"));
    EXPECT_EQ(scene.focusedTitle(), "Download");
    EXPECT_THAT(scene.findAll("LinkButton"), IsEmpty()) << "there is no page";
    EXPECT_EQ(scene.warnings(), "");
}

TEST(UpdateWindow, notesAreNeverMarkup) {
    UpdateScene scene;
    scene.check();
    auto item = scene.item();
    item.notes = "<p>&lt;img src='https://spy.example/x.png'&gt;</p>";
    item.shortVersion = "&lt;b&gt;2&lt;/b&gt;";
    scene.answer(item);
    for (const QQuickItem *text : scene.findAll("QQuickText"))
        EXPECT_EQ(text->property("textFormat").toInt(), static_cast<int>(Qt::PlainText))
            << text->property("text").toString().toStdString();
    EXPECT_TRUE(says(scene, "<img src='https://spy.example/x.png'>"));
    EXPECT_TRUE(says(scene, "Tarnvale <b>2</b> is available"));
}

TEST(UpdateWindow, fromTheOfferToTheInstaller) {
    UpdateScene scene;
    scene.check();
    auto item = scene.item();
    item.more = "<sparkle:releaseNotesLink>https://updates.example/notes</sparkle:releaseNotesLink>";
    scene.answer(item);
    scene.click("More in the Browser");
    EXPECT_THAT(scene.platform.desktop.opened, ElementsAre("https://updates.example/notes"));
    scene.press(Qt::Key_Space);
    EXPECT_TRUE(says(scene, "Downloading Tarnvale 2.0…"));
    EXPECT_THAT(scene.buttons(), ElementsAre("Cancel"));
    scene.source.progress(500'000);
    scene.draw();
    EXPECT_TRUE(says(scene, "500.0 kB of 2.0 MB"));
    ASSERT_EQ(scene.findAll("UpdateProgress").size(), 1u);
    EXPECT_DOUBLE_EQ(scene.findAll("UpdateProgress")[0]->property("value").toDouble(), 0.25);
    scene.deliver(scene.content);
    EXPECT_TRUE(says(scene, "Tarnvale 2.0 is ready to install"));
    EXPECT_THAT(scene.buttons(), ElementsAre("Show in Folder", "Later", "Open Installer"));
    EXPECT_EQ(scene.focusedTitle(), "Open Installer");
    scene.click("Show in Folder");
    EXPECT_THAT(scene.platform.desktop.revealed, ElementsAre(scene.folder.path("update.deb")));
    scene.click("Open Installer");
    backgroundThreads().waitForDone();
    scene.draw();
    EXPECT_EQ(scene.platform.desktop.opened.back(), "file://" + scene.folder.path("update.deb"));
    scene.click("Later");
    EXPECT_FALSE(scene.window->isOpen());
    EXPECT_TRUE(QFile::exists(QString::fromStdString(scene.folder.path("update.deb"))));
    EXPECT_EQ(scene.warnings(), "");
}

TEST(UpdateWindow, aDownloadCanBeCancelled) {
    UpdateScene scene;
    scene.check();
    scene.answer(scene.item());
    scene.click("Download");
    scene.click("Cancel");
    EXPECT_THAT(scene.buttons(), ElementsAre("Later", "Download"));
    EXPECT_FALSE(scene.source.isAsked());
    EXPECT_EQ(scene.warnings(), "");
}

TEST(UpdateWindow, aFailedCheckCanBeTriedAgain) {
    UpdateScene scene;
    scene.check();
    scene.source.failFeed(UpdateFailure::Kind::unreachable);
    scene.draw();
    EXPECT_TRUE(says(scene, "The check for updates failed"));
    EXPECT_TRUE(says(scene, "The update server can't be reached."));
    EXPECT_THAT(scene.buttons(), ElementsAre("Close", "Try Again"));
    scene.click("Try Again");
    EXPECT_EQ(scene.source.reads, 2);
    scene.answer(scene.item());
    EXPECT_THAT(scene.buttons(), ElementsAre("Later", "Download"));
    EXPECT_EQ(scene.warnings(), "");
}

TEST(UpdateWindow, aFailedDownloadIsTriedAgainWithoutACheck) {
    UpdateScene scene;
    scene.check();
    scene.answer(scene.item());
    scene.click("Download");
    scene.deliver("something else");
    EXPECT_TRUE(says(scene, "The download failed"));
    EXPECT_TRUE(says(scene, "The download isn't signed by Tarnvale's maker, so it was deleted."));
    scene.click("Try Again");
    EXPECT_EQ(scene.source.reads, 1);
    EXPECT_EQ(scene.source.downloads.size(), 2u);
    scene.click("Cancel");
    scene.click("Later");
    EXPECT_FALSE(scene.window->isOpen());
    EXPECT_EQ(scene.warnings(), "");
}

TEST(UpdateWindow, closingGivesUpWhatIsUnderWay) {
    for (const auto &[key, modifiers] :
         {std::pair<Qt::Key, Qt::KeyboardModifiers>{Qt::Key_Escape, {}},
          std::pair<Qt::Key, Qt::KeyboardModifiers>{Qt::Key_W, Qt::ControlModifier}}) {
        UpdateScene scene;
        scene.check();
        scene.answer(scene.item());
        scene.click("Download");
        EXPECT_TRUE(scene.source.isAsked());
        scene.press(key, modifiers);
        EXPECT_FALSE(scene.window->isOpen());
        EXPECT_FALSE(scene.source.isAsked());
        EXPECT_EQ(scene.checker->state().phase, Phase::idle);
        EXPECT_EQ(scene.window->window(), nullptr);
        EXPECT_EQ(scene.warnings(), "");
    }
}

TEST(UpdateWindow, opensAnewAndOnlyOnce) {
    UpdateScene scene;
    scene.check();
    const QQuickWindow *first = scene.window->window();
    scene.check();
    EXPECT_EQ(scene.window->window(), first);
    scene.press(Qt::Key_Escape);
    scene.check();
    EXPECT_TRUE(scene.window->isOpen());
    scene.answer(scene.item());
    EXPECT_THAT(scene.buttons(), ElementsAre("Later", "Download"));
}

TEST(UpdateWindow, everythingIsReachedByTheKeyboard) {
    UpdateScene scene;
    scene.check();
    auto item = scene.item();
    item.notes = "line\n";
    for (int i = 0; i < 8; ++i)
        item.notes += item.notes;
    item.more = "<sparkle:releaseNotesLink>https://updates.example/notes</sparkle:releaseNotesLink>";
    scene.answer(item);
    std::vector<std::string> visited;
    QQuickItem *notes = nullptr;
    for (int i = 0; i < 4; ++i) {
        scene.press(Qt::Key_Tab);
        QQuickItem *focused = scene.window->window()->activeFocusItem();
        ASSERT_NE(focused, nullptr);
        visited.push_back(scene.focusedTitle());
        if (visited.back().empty())
            notes = focused;
    }
    EXPECT_THAT(visited, testing::UnorderedElementsAre("", "More in the Browser", "Later", "Download"));
    ASSERT_NE(notes, nullptr) << "notes that don't fit can be scrolled";
    notes->forceActiveFocus();
    scene.press(Qt::Key_Down);
    EXPECT_GT(notes->property("contentY").toDouble(), 0);
    scene.press(Qt::Key_PageUp);
    EXPECT_EQ(notes->property("contentY").toDouble(), 0);
    EXPECT_EQ(scene.warnings(), "");
}

TEST(UpdateWindow, nothingLeavesASmallWindow) {
    UpdateScene scene;
    scene.check();
    auto item = scene.item();
    item.shortVersion = std::string(200, '9');
    item.notes = std::string(5000, 'W');
    item.more = "<sparkle:releaseNotesLink>https://updates.example/notes</sparkle:releaseNotesLink>";
    scene.answer(item);
    QQuickWindow *window = scene.window->window();
    window->resize(window->minimumSize());
    expectNoOverlap(scene);
    scene.click("Download");
    expectNoOverlap(scene);
    scene.deliver(scene.content);
    expectNoOverlap(scene);
    EXPECT_EQ(scene.checker->state().phase, Phase::ready);
}

TEST(UpdateWindow, theEndOfTheProgramClosesIt) {
    UpdateScene scene;
    scene.check();
    scene.answer(scene.item());
    scene.click("Download");
    QMetaObject::invokeMethod(QCoreApplication::instance(), "aboutToQuit");
    EXPECT_EQ(scene.window->window(), nullptr);
    EXPECT_FALSE(scene.source.isAsked());
}

} // namespace
} // namespace tarnvale
