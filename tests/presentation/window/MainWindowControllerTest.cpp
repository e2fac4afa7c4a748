#include "presentation/window/MainWindowController.h"

#include "presentation/design/Appearance.h"
#include "presentation/window/WindowTest.h"
#include "presentation/window/registerWindow.h"

#include <QGuiApplication>
#include <QQmlEngine>
#include <QScreen>

#include <gmock/gmock.h>

#include <algorithm>

namespace tarnvale {
namespace {

using namespace std::chrono_literals;

constexpr const char *placeKey = "TarnvaleMainWindow";

class MainWindowControllerTest : public WindowTest {
protected:
    MainWindowControllerTest() {
        Appearance::instance().setOverride(false, true);
        world.settings.values["hasSeenWelcome"] = true;
        registerWindow(engine);
    }
    ~MainWindowControllerTest() override {
        quiesce();
        controller.reset();
        Appearance::instance().setOverride(std::nullopt, std::nullopt);
    }

    void startWindow() {
        addServer(42, 3000);
        addPostgres();
        answerAll();
        start();
        make();
    }
    void make() {
        controller.reset();
        controller = std::make_unique<MainWindowController>(*store, world.platform(), engine, *hotKey,
                                                            WindowActions{});
    }
    void show() {
        controller->show();
        quiesce();
    }
    void close() {
        window().close();
        quiesce();
    }

    [[nodiscard]] MainWindow &window() const { return *controller->window(); }
    [[nodiscard]] std::optional<WindowPlace> stored() const {
        return windowPlaceFromJson(world.settings.bytes(placeKey).value_or(""));
    }
    [[nodiscard]] std::ptrdiff_t scans() const {
        return std::ranges::count(world.machine.questions(), "listeningSockets");
    }
    [[nodiscard]] static QRect screen() { return QGuiApplication::primaryScreen()->availableGeometry(); }

    QQmlEngine engine;
    std::unique_ptr<MainWindowController> controller;
};

TEST_F(MainWindowControllerTest, thereIsNoWindowBeforeItIsWanted) {
    startWindow();
    EXPECT_EQ(controller->window(), nullptr);
    EXPECT_FALSE(controller->isVisible());
    EXPECT_FALSE(store->isWindowVisible());
}

TEST_F(MainWindowControllerTest, theWindowNeverOpensOnOldData) {
    startWindow();
    const std::ptrdiff_t before = scans();
    show();
    EXPECT_TRUE(controller->isVisible());
    EXPECT_TRUE(store->isWindowVisible());
    EXPECT_EQ(scans(), before + 1);
    show();
    EXPECT_EQ(scans(), before + 1) << "it was open";
}

TEST_F(MainWindowControllerTest, theFirstTimeItIsCentredInItsOwnSize) {
    startWindow();
    show();
    EXPECT_EQ(window().size(), QSize(1080, 700).boundedTo(screen().size().expandedTo(QSize(800, 560))));
    EXPECT_LE(std::abs(window().geometry().center().x() - screen().center().x()), 4) << "but for its frame";
    EXPECT_EQ(window().minimumSize(), QSize(800, 560));
}

TEST_F(MainWindowControllerTest, theTitleIsThatOfThePage) {
    startWindow();
    show();
    EXPECT_EQ(window().title(), QStringLiteral("Overview"));
    controller->view().select(SidebarItem::allPorts);
    EXPECT_EQ(window().title(), QStringLiteral("All Ports"));
}

TEST_F(MainWindowControllerTest, closingHidesItAndTheSameOneComesBack) {
    startWindow();
    show();
    controller->view().select(SidebarItem::web);
    controller->view().setQuery(QStringLiteral("shop"));
    const MainWindow *before = &window();
    close();
    EXPECT_FALSE(controller->isVisible());
    EXPECT_FALSE(store->isWindowVisible());
    ASSERT_EQ(controller->window(), before);
    const std::ptrdiff_t scanned = scans();
    show();
    EXPECT_EQ(controller->window(), before);
    EXPECT_TRUE(store->isWindowVisible());
    EXPECT_EQ(controller->view().page(), SidebarItem::web);
    EXPECT_EQ(controller->view().query(), QStringLiteral("shop"));
    EXPECT_EQ(scans(), scanned + 1);
}

TEST_F(MainWindowControllerTest, itNeverRefusesToClose) {
    startWindow();
    show();
    EXPECT_TRUE(window().close()) << "the end of the session, or of the program, would wait for it";
    EXPECT_FALSE(controller->isVisible());
    EXPECT_NE(controller->window(), nullptr);
}

TEST_F(MainWindowControllerTest, itClosesAsThePageAsksFor) {
    startWindow();
    show();
    controller->view().closeWindow();
    quiesce();
    EXPECT_FALSE(controller->isVisible());
    controller->view().closeWindow();
    EXPECT_FALSE(store->isWindowVisible());
}

TEST_F(MainWindowControllerTest, closingClosesThePalette) {
    startWindow();
    show();
    controller->view().togglePalette();
    close();
    show();
    EXPECT_FALSE(controller->view().isPaletteShown());
}

TEST_F(MainWindowControllerTest, aWindowThatNobodyLookedAtForAWhileIsGivenBack) {
    startWindow();
    show();
    controller->view().select(SidebarItem::services);
    controller->view().setQuery(QStringLiteral("post"));
    controller->view().toggleSidebar();
    close();
    pass(29s);
    EXPECT_NE(controller->window(), nullptr);
    pass(1s);
    EXPECT_EQ(controller->window(), nullptr);
    show();
    ASSERT_NE(controller->window(), nullptr);
    EXPECT_TRUE(controller->isVisible());
    EXPECT_EQ(window().title(), QStringLiteral("Databases & Services"));
    EXPECT_EQ(controller->view().query(), QStringLiteral("post"));
    EXPECT_FALSE(controller->view().isSidebarShown());
}

TEST_F(MainWindowControllerTest, aWindowThatCameBackIsKept) {
    startWindow();
    show();
    close();
    pass(20s);
    show();
    pass(60s);
    EXPECT_TRUE(controller->isVisible());
    close();
    pass(20s);
    show();
    close();
    pass(20s);
    EXPECT_NE(controller->window(), nullptr) << "each closing begins its time anew";
    pass(10s);
    EXPECT_EQ(controller->window(), nullptr);
}

TEST_F(MainWindowControllerTest, aMinimisedWindowComesBack) {
    startWindow();
    show();
    window().setWindowStates(Qt::WindowMinimized);
    ASSERT_TRUE(window().windowStates() & Qt::WindowMinimized);
    show();
    EXPECT_FALSE(window().windowStates() & Qt::WindowMinimized);
    EXPECT_TRUE(controller->isVisible());
}

TEST_F(MainWindowControllerTest, aMinimisedMaximizedWindowComesBackMaximized) {
    startWindow();
    show();
    window().setWindowStates(Qt::WindowMaximized | Qt::WindowMinimized);
    show();
    EXPECT_EQ(window().windowStates(), Qt::WindowStates(Qt::WindowMaximized));
}

// Its place.

TEST_F(MainWindowControllerTest, itsPlaceIsStoredOnceItRests) {
    startWindow();
    show();
    pass(2s);
    const int writes = world.settings.writes;
    for (const int width : {900, 910, 920, 930})
        window().resize(width, 600);
    window().setPosition(20, 30);
    quiesce();
    EXPECT_EQ(world.settings.writes, writes);
    pass(1s);
    EXPECT_EQ(stored(), (WindowPlace{QRect(20, 30, 930, 600), false}));
    EXPECT_EQ(world.settings.writes, writes + 1);
}

TEST_F(MainWindowControllerTest, closingStoresItAtOnce) {
    startWindow();
    show();
    window().setGeometry(10, 20, 870, 580);
    close();
    EXPECT_EQ(stored(), (WindowPlace{QRect(10, 20, 870, 580), false}));
}

TEST_F(MainWindowControllerTest, theEndOfTheProgramStoresIt) {
    startWindow();
    show();
    window().setGeometry(11, 21, 871, 581);
    controller.reset();
    EXPECT_EQ(stored(), (WindowPlace{QRect(11, 21, 871, 581), false}));
}

TEST_F(MainWindowControllerTest, itOpensWhereItWasLeft) {
    const QRect frame(10, 40, 820, 570);
    world.settings.values[placeKey] = toJson({frame, false});
    startWindow();
    show();
    if (screen().width() < 100)
        GTEST_SKIP() << "there is hardly a screen";
    EXPECT_EQ(window().geometry(), frame);
}

TEST_F(MainWindowControllerTest, itOpensMaximizedIfItWasLeftSo) {
    world.settings.values[placeKey] = toJson({QRect(10, 40, 820, 570), true});
    startWindow();
    show();
    EXPECT_TRUE(window().windowStates() & Qt::WindowMaximized);
    pass(2s);
    close();
    pass(31s);
    ASSERT_EQ(controller->window(), nullptr);
    EXPECT_EQ(stored(), (WindowPlace{QRect(10, 40, 820, 570), true})) << "its size before is kept";
    show();
    EXPECT_TRUE(window().windowStates() & Qt::WindowMaximized);
}

TEST_F(MainWindowControllerTest, aPlaceThatIsNoneIsLeftOut) {
    for (const char *json : {"", "{", "[]", R"({"x":1})", R"({"x":9e9,"y":0,"width":900,"height":600})"}) {
        world.settings.values[placeKey] = std::string(json);
        if (!store)
            startWindow();
        else
            make();
        show();
        EXPECT_EQ(window().width(), std::min(1080, std::max(800, screen().width()))) << json;
        close();
    }
}

TEST_F(MainWindowControllerTest, aPlaceThatCanNotBeStoredIsNoError) {
    startWindow();
    show();
    world.settings.isFull = true;
    window().setGeometry(10, 20, 870, 580);
    pass(2s);
    EXPECT_EQ(error(), "");
}

// What belongs to the pages.

TEST_F(MainWindowControllerTest, thePaletteLeadsToPagesAndPorts) {
    startWindow();
    show();
    controller->view().togglePalette();
    controller->palette().setQuery(QStringLiteral("activity"));
    ASSERT_GT(controller->palette().rowCount(), 0);
    controller->palette().activate();
    quiesce();
    EXPECT_EQ(controller->view().page(), SidebarItem::activity);
    EXPECT_FALSE(controller->view().isPaletteShown());
}

TEST_F(MainWindowControllerTest, withoutAWindowThereIsNothingToGiveBack) {
    startWindow();
    show();
    close();
    pass(31s);
    EXPECT_EQ(controller->window(), nullptr);
    controller->view().closeWindow();
    controller->updatePictures();
    EXPECT_FALSE(controller->isVisible());
}

} // namespace
} // namespace tarnvale
