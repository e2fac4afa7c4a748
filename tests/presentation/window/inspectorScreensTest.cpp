// The inspector of the main window as its user meets it, card by card.

#include "presentation/window/Sparkline.h"
#include "presentation/window/WindowScene.h"

#include <QAccessible>
#include <QTest>

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>

namespace tarnvale {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::int64_t shop = 5173;     ///< a web server that answers
constexpr std::int64_t billing = 8000;  ///< an exposed one that fails
constexpr std::int64_t postgres = 5432; ///< a database

QString text(const char *words) {
    return QString::fromUtf8(words);
}

/// The titles of the buttons with words that stand in a part of the inspector.
std::vector<std::string> buttonsOf(const WindowScene &scene, const char *card) {
    std::vector<std::string> titles;
    for (const QQuickItem *button : scene.findAll("PushButton"))
        if (isWithin(button, scene.find(card)))
            titles.push_back(button->property("title").toString().toStdString());
    return titles;
}

QQuickItem *push(const WindowScene &scene, const char *title) {
    return scene.find("PushButton", text(title));
}

/// Brings a part of the inspector into the middle of its view.
void scrollTo(WindowScene &scene, const QQuickItem *item) {
    ASSERT_NE(item, nullptr);
    QQuickItem *view = scene.find("PortInspector")->findChild<QQuickItem *>(QStringLiteral("inspectorView"));
    ASSERT_NE(view, nullptr);
    const double middle = frameOf(*item).center().y() - frameOf(*view).center().y();
    const double last = std::max(0.0, view->property("contentHeight").toDouble() - view->height());
    view->setProperty("contentY", std::clamp(view->property("contentY").toDouble() + middle, 0.0, last));
    scene.draw();
}

void clickOn(WindowScene &scene, const QQuickItem *item) {
    scrollTo(scene, item);
    scene.click(item);
}

/// A project with a log that its framework keeps, in the user's home.
void addLog(DemoWorld &world) {
    const std::filesystem::path home = qEnvironmentVariable("HOME").toStdString();
    for (const char *name : {"blog", "docs"}) {
        std::filesystem::create_directories(home / name / "storage/logs");
        std::ofstream(home / name / "storage/logs/laravel.log") << name << " one\n"
                                                                << name << " Error: two\n";
    }
    FakeMachine &machine = world.platform.machine;
    machine.add({.pid = 70, .path = "/usr/bin/php8.2", .args = "php -S", .cwd = (home / "blog").string()});
    machine.listen(70, 9100);
    machine.add({.pid = 71, .path = "/usr/bin/php8.2", .args = "php -S x", .cwd = (home / "docs").string()});
    machine.listen(71, 9200);
}

QQuickItem *logEditor(const WindowScene &scene) {
    for (QQuickItem *item : scene.findAll("QQuickTextEdit"))
        if (isWithin(item, scene.find("LogsBlock")))
            return item;
    return nullptr;
}

// Which cards a port gets.

TEST(InspectorScreens, aWebServerHasWhatBelongsToOne) {
    WindowScene scene("few");
    scene.inspect(shop);
    for (const char *card :
         {"InspectorHeader", "WebPreviewCard", "ActionBar", "DetailsCard", "UsageCard", "LogsBlock",
          "CommandBlock", "FolderBlock", "NotifyCard", "HealthCheckCard", "ShareCard"})
        EXPECT_NE(scene.find(card), nullptr) << card;
    EXPECT_EQ(scene.find("PhoneCard"), nullptr) << "it isn't exposed";
    EXPECT_NE(push(scene, "Open in Browser"), nullptr);
    EXPECT_NE(push(scene, "Copy URL"), nullptr);
    EXPECT_NE(push(scene, "Restart"), nullptr);
    EXPECT_NE(push(scene, "Kill Process"), nullptr);
    EXPECT_EQ(scene.warnings(), "");
}

TEST(InspectorScreens, theCardsStandInTheirOrder) {
    WindowScene scene("few");
    scene.inspect(shop);
    double before = -1;
    for (const char *card :
         {"InspectorHeader", "WebPreviewCard", "ActionBar", "DetailsCard", "UsageCard", "LogsBlock",
          "CommandBlock", "FolderBlock", "NotifyCard", "HealthCheckCard", "ShareCard"}) {
        const QRectF frame = frameOf(*scene.find(card));
        EXPECT_GT(frame.top(), before) << card;
        before = frame.bottom();
    }
    EXPECT_GT(frameOf(*push(scene, "Kill Process")).top(), before);
}

TEST(InspectorScreens, whatIsNoWebServerHasNoneOfIt) {
    WindowScene scene("few");
    scene.inspect(postgres);
    for (const char *card : {"WebPreviewCard", "HealthCheckCard", "ShareCard", "PhoneCard"})
        EXPECT_EQ(scene.find(card), nullptr) << card;
    EXPECT_EQ(push(scene, "Open in Browser"), nullptr);
    EXPECT_NE(push(scene, "Copy Address"), nullptr);
    EXPECT_TRUE(scene.says(text("Listening")));
    EXPECT_EQ(scene.warnings(), "");
}

TEST(InspectorScreens, withoutPreviewsThereIsNoCardForThem) {
    WindowScene scene("few",
                      [](DemoWorld &world) { world.platform.settings.values["showWebPreviews"] = false; });
    scene.inspect(shop);
    EXPECT_EQ(scene.find("WebPreviewCard"), nullptr);
    scene.world.platform.settings.values["showWebPreviews"] = true;
    scene.controller->updatePictures();
    scene.draw();
    EXPECT_NE(scene.find("WebPreviewCard"), nullptr);
}

TEST(InspectorScreens, withoutCommandAndFolderThereAreNoBlocksForThem) {
    WindowScene scene("empty", [](DemoWorld &world) {
        world.platform.machine.add({.pid = 80, .path = "/usr/bin/node", .args = "node", .isReadable = false});
        world.platform.machine.listen(80, 3000);
        world.answers[3000] = {Health::responding(200), 5};
    });
    scene.store->setShowAll(true);
    scene.scan();
    scene.inspect(3000);
    EXPECT_EQ(scene.find("CommandBlock"), nullptr);
    EXPECT_EQ(scene.find("FolderBlock"), nullptr);
    EXPECT_EQ(scene.find("UsageCard"), nullptr);
    EXPECT_EQ(push(scene, "Restart"), nullptr);
    EXPECT_EQ(push(scene, "Restart to Capture Logs"), nullptr);
    EXPECT_EQ(scene.warnings(), "");
}

TEST(InspectorScreens, thePhonesCardTakesNoRoomWithoutANetwork) {
    WindowScene scene("few");
    scene.inspect(billing);
    scene.draw();
    ASSERT_TRUE(scene.inspector().facts().hasPhone);
    EXPECT_EQ(scene.find("PhoneCard") != nullptr, !scene.inspector().phoneUrl().isEmpty());
    if (const QQuickItem *card = scene.find("PhoneCard")) {
        scrollTo(scene, card);
        EXPECT_TRUE(scene.says(text("Open on your phone")));
        EXPECT_TRUE(scene.says(scene.inspector().phoneUrl()));
    }
    scene.inspect(shop);
    const QRectF above = frameOf(*scene.find("ShareCard"));
    const QRectF below = frameOf(*push(scene, "Kill Process"));
    EXPECT_LE(below.top() - above.bottom(), 16);
    EXPECT_EQ(scene.warnings(), "");
}

// Header and actions.

TEST(InspectorScreens, aWebServerThatFindsNothingHasAnOrangeChip) {
    WindowScene scene("full");
    scene.inspect(8080);
    const QQuickItem *chip = scene.find("HealthChip");
    ASSERT_NE(chip, nullptr);
    EXPECT_EQ(chip->property("text").toString(), text("404"));
    EXPECT_EQ(chip->property("tint").toString(), text("orange"));
    EXPECT_EQ(chip->property("tip").toString(), text("Responds (HTTP 404)"));
    EXPECT_TRUE(scene.says(text("12 ms")));
    EXPECT_TRUE(scene.says(text("up 48s"))) << scene.texts().join(QLatin1Char('|')).toStdString();
}

TEST(InspectorScreens, theActionsAct) {
    WindowScene scene("few");
    scene.inspect(shop);
    clickOn(scene, push(scene, "Open in Browser"));
    EXPECT_THAT(scene.world.platform.desktop.opened, ElementsAre("http://localhost:5173"));
    clickOn(scene, push(scene, "Copy URL"));
    EXPECT_THAT(scene.world.platform.clipboard.texts, ElementsAre("http://localhost:5173"));
    ASSERT_NE(push(scene, "Copied"), nullptr);
    EXPECT_EQ(push(scene, "Copied")->property("symbol").toString(), text("checkmark"));
    scene.pass(1200ms);
    EXPECT_NE(push(scene, "Copy URL"), nullptr);
    clickOn(scene, push(scene, "Reveal"));
    EXPECT_THAT(scene.world.platform.desktop.revealed, ElementsAre("/home/me/shop"));
    EXPECT_EQ(scene.warnings(), "");
}

TEST(InspectorScreens, aDetailIsCopiedByItsButton) {
    WindowScene scene("few");
    scene.inspect(shop);
    QQuickItem *button = scene.find("IconButton", text("Copy PID"));
    scrollTo(scene, button);
    EXPECT_EQ(button->opacity(), 0) << "it stands there under the pointer or the keyboard";
    scene.click(button);
    EXPECT_THAT(scene.world.platform.clipboard.texts, ElementsAre("4201"));
    EXPECT_NE(scene.find("IconButton", text("Copied")), nullptr);
    EXPECT_EQ(button->opacity(), 1);
    scene.pass(1200ms);
    EXPECT_EQ(scene.find("IconButton", text("Copied")), nullptr);
    clickOn(scene, scene.find("IconButton", text("Copy Command")));
    EXPECT_EQ(scene.world.platform.clipboard.texts.back(), "node node_modules/.bin/vite");
}

TEST(InspectorScreens, aStopTakesTwoClicks) {
    WindowScene scene("few");
    scene.inspect(shop);
    clickOn(scene, push(scene, "Kill Process"));
    QQuickItem *armed = push(scene, "Click again to confirm");
    ASSERT_NE(armed, nullptr);
    EXPECT_EQ(armed->property("symbol").toString(), text("exclamationmark.triangle.fill"));
    EXPECT_THAT(scene.world.platform.processes.sent, IsEmpty());
    scene.pass(4s);
    EXPECT_NE(push(scene, "Kill Process"), nullptr);
    clickOn(scene, push(scene, "Kill Process"));
    clickOn(scene, push(scene, "Click again to confirm"));
    scene.pass(1s);
    scene.draw();
    EXPECT_EQ(scene.world.platform.processes.sent.size(), 1u);
    EXPECT_EQ(scene.find("PortInspector"), nullptr);
    EXPECT_TRUE(scene.says(text("No port selected")));
    EXPECT_EQ(scene.warnings(), "");
}

TEST(InspectorScreens, anotherRowBeginsAtItsTop) {
    WindowScene scene("few");
    scene.inspect(shop);
    scrollTo(scene, push(scene, "Kill Process"));
    const QQuickItem *view =
        scene.find("PortInspector")->findChild<QQuickItem *>(QStringLiteral("inspectorView"));
    EXPECT_GT(view->property("contentY").toDouble(), 0);
    scene.scan();
    EXPECT_GT(view->property("contentY").toDouble(), 0) << "a scan leaves it where it is";
    scene.inspect(billing);
    EXPECT_EQ(view->property("contentY").toDouble(), 0);
}

// Cards.

TEST(InspectorScreens, theUseOfTheProcessorIsDrawn) {
    WindowScene scene("few");
    scene.inspect(shop);
    for (const char *words : {"CPU", "1.5%", "Memory"})
        EXPECT_TRUE(scene.says(text(words))) << words;
    EXPECT_TRUE(scene.says(scene.inspector().facts().cpuCaption));
    const QQuickItem *line = nullptr;
    for (const QQuickItem *item : scene.visibleItems())
        if (qobject_cast<const Sparkline *>(item) != nullptr)
            line = item;
    ASSERT_NE(line, nullptr);
    const QColor calm = line->property("tint").value<QColor>();
    scene.world.platform.machine.processes[4201].cpu = 99;
    scene.scan();
    EXPECT_NE(line->property("tint").value<QColor>(), calm);
}

TEST(InspectorScreens, aHealthPathIsSavedByButtonAndReturn) {
    WindowScene scene("few");
    scene.inspect(shop);
    QQuickItem *field = nullptr;
    for (QQuickItem *each : scene.findAll("TextField"))
        if (isWithin(each, scene.find("HealthCheckCard")))
            field = each;
    ASSERT_NE(field, nullptr);
    EXPECT_EQ(field->property("text").toString(), text("/"));
    EXPECT_FALSE(push(scene, "Save")->isEnabled());
    clickOn(scene, field);
    scene.press(Qt::Key_End);
    scene.type(text("up"));
    EXPECT_EQ(field->property("text").toString(), text("/up"));
    EXPECT_EQ(scene.view().query(), QString()) << "the window's keys are not the field's";
    EXPECT_TRUE(push(scene, "Save")->isEnabled());
    clickOn(scene, push(scene, "Save"));
    EXPECT_EQ(scene.store->healthPaths().at("5173"), "/up");
    EXPECT_FALSE(push(scene, "Save")->isEnabled());
    clickOn(scene, field);
    scene.press(Qt::Key_A, Qt::ControlModifier);
    scene.type(text("/"));
    EXPECT_EQ(field->property("text").toString(), text("/"));
    scene.press(Qt::Key_Return);
    EXPECT_THAT(scene.store->healthPaths(), IsEmpty());
    EXPECT_EQ(field->property("text").toString(), text("/"));
    scene.type(text(" x"));
    EXPECT_FALSE(push(scene, "Save")->isEnabled()) << "no path";
    scene.press(Qt::Key_Return);
    EXPECT_THAT(scene.store->healthPaths(), IsEmpty());
    EXPECT_EQ(scene.warnings(), "");
}

TEST(InspectorScreens, aHalfTypedPathStaysWithItsRow) {
    WindowScene scene("few");
    scene.inspect(shop);
    scene.store->setHealthPath("/up", scene.ports().entryAt(0)->port);
    scene.draw();
    const auto field = [&scene] { return scene.find("TextField", text("Health check path"), "label"); };
    EXPECT_EQ(field()->property("text").toString(), text("/up"));
    clickOn(scene, field());
    scene.type(text("x"));
    scene.scan();
    EXPECT_EQ(field()->property("text").toString(), text("/upx")) << "a scan leaves it alone";
    scene.inspect(billing);
    EXPECT_EQ(field()->property("text").toString(), text("/"));
    scene.inspect(shop);
    EXPECT_EQ(field()->property("text").toString(), text("/up"));
}

TEST(InspectorScreens, theSwitchWatchesThePort) {
    WindowScene scene("few");
    scene.inspect(shop);
    EXPECT_TRUE(scene.says(text("A notification if port 5173 stops listening.")));
    QQuickItem *toggle = scene.find("Switch", text("Notify when it stops"));
    clickOn(scene, toggle);
    EXPECT_TRUE(toggle->property("checked").toBool());
    EXPECT_THAT(scene.store->watchedPorts(), ElementsAre(shop));
    scene.click(toggle);
    EXPECT_FALSE(toggle->property("checked").toBool());
    EXPECT_THAT(scene.store->watchedPorts(), IsEmpty());
}

TEST(InspectorScreens, sharingIsOfferedStartedAndEnded) {
    WindowScene scene("few");
    scene.inspect(shop);
    EXPECT_TRUE(scene.says(text("Install cloudflared (brew install cloudflared) or ngrok to share a port.")));
    EXPECT_THAT(buttonsOf(scene, "ShareCard"), IsEmpty());
    scene.world.platform.tools.installed["cloudflared"] = "/usr/bin/cloudflared";
    scene.pass(2s);
    scene.draw();
    EXPECT_THAT(buttonsOf(scene, "ShareCard"), ElementsAre("Share via cloudflared"));
    EXPECT_TRUE(scene.says(text("Anyone with the link can reach this server until you stop sharing.")));
    clickOn(scene, push(scene, "Share via cloudflared"));
    EXPECT_TRUE(scene.says(text("Starting cloudflared…")));
    EXPECT_THAT(buttonsOf(scene, "ShareCard"), ElementsAre("Stop Sharing"));
    scene.world.platform.tools.started.back()->write("https://deft-words.trycloudflare.com");
    scene.draw();
    EXPECT_TRUE(scene.says(text("https://deft-words.trycloudflare.com")));
    EXPECT_THAT(buttonsOf(scene, "ShareCard"), ElementsAre("Copy Public URL", "Stop Sharing"));
    clickOn(scene, push(scene, "Copy Public URL"));
    EXPECT_EQ(scene.world.platform.clipboard.texts.back(), "https://deft-words.trycloudflare.com");
    clickOn(scene, push(scene, "Stop Sharing"));
    EXPECT_THAT(buttonsOf(scene, "ShareCard"), ElementsAre("Share via cloudflared"));
    EXPECT_EQ(scene.warnings(), "");
}

TEST(InspectorScreens, aPageIsPictured) {
    WindowScene scene("few");
    scene.inspect(shop);
    scene.pass(5s);
    scene.draw();
    const QQuickItem *card = scene.find("WebPreviewCard");
    ASSERT_NE(card, nullptr);
    EXPECT_TRUE(card->property("captionText").toString().startsWith(text("Captured ")))
        << card->property("captionText").toString().toStdString();
    const auto asked = scene.world.platform.previewCapturer.asked.size();
    clickOn(scene, scene.find("IconButton", text("Refresh Preview")));
    EXPECT_EQ(scene.world.platform.previewCapturer.asked.size(), asked + 1);
    EXPECT_EQ(scene.world.platform.previewCapturer.asked.back(), shop);
    clickOn(scene, scene.find("WebPreviewImage"));
    EXPECT_THAT(scene.world.platform.desktop.opened, ElementsAre("http://localhost:5173"));
    EXPECT_EQ(scene.warnings(), "");
}

TEST(InspectorScreens, aPageWithoutAPictureSaysWhatItWaitsFor) {
    WindowScene scene("few", [](DemoWorld &world) { world.platform.previewCapturer.isSlow = true; });
    scene.inspect(shop);
    const auto caption = [&scene] {
        return scene.find("WebPreviewCard")->property("captionText").toString();
    };
    EXPECT_EQ(caption(), text("Capturing preview…"));
    scene.world.platform.previewCapturer.answer(shop, std::nullopt);
    scene.draw();
    EXPECT_EQ(caption(), text("Preview appears once the page responds"));
    EXPECT_NE(scene.find("Symbol", text("photo"), "name"), nullptr);
    scene.world.platform.previewCapturer.answerAll();
    scene.draw();
}

// Logs.

TEST(InspectorScreens, theOutputOfAnothersProcessCanNotBeRead) {
    WindowScene scene("few");
    scene.inspect(shop);
    EXPECT_TRUE(scene.says(text("Tarnvale can't read the output of a process it didn't start.")));
    EXPECT_THAT(buttonsOf(scene, "LogsBlock"), ElementsAre("Restart to Capture Logs"));
    EXPECT_EQ(scene.find("IconButton", text("Pause")), nullptr);
    EXPECT_EQ(logEditor(scene), nullptr);
}

TEST(InspectorScreens, aSystemProcessIsNotRestartedForItsLogs) {
    WindowScene scene("few", [](DemoWorld &world) {
        world.platform.machine.add({.pid = 90, .path = "/usr/bin/node", .args = "node x.js", .cwd = "/"});
        world.platform.machine.listen(90, 9900);
    });
    scene.store->setShowAll(true);
    scene.scan();
    scene.inspect(9900);
    EXPECT_TRUE(scene.says(text("Tarnvale can't read the output of a process it didn't start.")));
    EXPECT_THAT(buttonsOf(scene, "LogsBlock"), IsEmpty());
}

TEST(InspectorScreens, aLogIsShownPausedAndOpened) {
    WindowScene scene("few", addLog);
    scene.inspect(9100);
    scene.draw();
    EXPECT_TRUE(scene.says(text("laravel.log")));
    ASSERT_NE(logEditor(scene), nullptr);
    const auto shown = [&scene] { return logEditor(scene)->property("text").toString().toStdString(); };
    EXPECT_EQ(shown(), "blog one\nblog Error: two");
    clickOn(scene, scene.find("IconButton", text("Pause")));
    EXPECT_TRUE(scene.inspector().log()->isPaused());
    clickOn(scene, scene.find("IconButton", text("Resume")));
    EXPECT_FALSE(scene.inspector().log()->isPaused());
    clickOn(scene, scene.find("IconButton", text("Open in Console")));
    EXPECT_THAT(scene.world.platform.desktop.logs,
                ElementsAre(scene.home.path("blog/storage/logs/laravel.log")));
    scene.inspect(9200);
    scene.draw();
    EXPECT_EQ(shown(), "docs one\ndocs Error: two");
    EXPECT_EQ(scene.warnings(), "");
}

TEST(InspectorScreens, aLogKeepsItsEndInSight) {
    WindowScene scene("few", addLog);
    scene.inspect(9100);
    scene.draw();
    std::ofstream log(scene.home.path("blog/storage/logs/laravel.log"), std::ios::app);
    for (int line = 0; line < 100; ++line)
        log << "line " << line << "\n";
    log.flush();
    scene.pass(1s);
    scene.draw();
    const QQuickItem *view = logEditor(scene)->parentItem()->parentItem();
    EXPECT_GT(view->property("contentHeight").toDouble(), view->height());
    EXPECT_NEAR(view->property("contentY").toDouble(),
                view->property("contentHeight").toDouble() - view->height(), 1);
}

TEST(InspectorScreens, anEmptyLogWaits) {
    WindowScene scene("few", addLog);
    std::ofstream(scene.home.path("blog/storage/logs/laravel.log")).flush();
    scene.inspect(9100);
    scene.draw();
    EXPECT_TRUE(scene.says(text("Waiting for output…")));
    std::ofstream(scene.home.path("blog/storage/logs/laravel.log")) << "here it is\n";
    scene.pass(1s);
    scene.draw();
    EXPECT_FALSE(scene.says(text("Waiting for output…")));
}

TEST(InspectorScreens, aWindowThatWasGivenBackShowsTheLogAgain) {
    WindowScene scene("few", addLog);
    scene.inspect(9100);
    scene.draw();
    scene.window().close();
    scene.pass(31s);
    ASSERT_EQ(scene.controller->window(), nullptr);
    scene.controller->show();
    scene.draw();
    ASSERT_NE(logEditor(scene), nullptr);
    EXPECT_EQ(logEditor(scene)->property("text").toString(), text("blog one\nblog Error: two"));
    EXPECT_EQ(scene.warnings(), "");
}

} // namespace
} // namespace tarnvale
