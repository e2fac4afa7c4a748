// The palette as it is seen, worked by real keys and clicks.

#include "presentation/design/Appearance.h"
#include "presentation/palette/PaletteController.h"
#include "presentation/palette/registerPalette.h"
#include "presentation/shared/QmlWarnings.h"
#include "presentation/shared/screenItems.h"
#include "store/StoreTest.h"

#include <QAccessible>
#include <QKeyEvent>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>
#include <QTest>

#include <gmock/gmock.h>

#include <algorithm>

namespace tarnvale {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class PaletteScene : public StoreTest {
protected:
    void SetUp() override {
        Appearance::instance().setOverride(qEnvironmentVariableIsSet("TARNVALE_DARK"), true);
        registerPalette(engine);
        for (Pid i = 0; i < 20; ++i)
            addServer(100 + i, 3000 + i, "node server.js", "/home/me/shop" + std::to_string(i));
        for (std::int64_t port = 3000; port < 3020; ++port)
            answers[port] = {Health::responding(200), {}};
        start();
        store->saveStack("everything", {{.args = "npm run dev", .cwd = "/home/me/api"}});
        palette = std::make_unique<PaletteController>(*store, world.platform(), inputs());
        palette->setShown(true);
        show();
    }
    void TearDown() override {
        EXPECT_EQ(warnings.text(), "");
        delete window.rootObject();
        palette.reset();
        window.releaseResources();
        Appearance::instance().setOverride(std::nullopt, std::nullopt);
    }

    PaletteInputs inputs() {
        PaletteInputs made;
        made.rows = [this] {
            std::vector<RowEntry> rows;
            for (const ListeningPort &port : store->visiblePorts())
                rows.push_back({port, {}, store->isWebPort(port)});
            return rows;
        };
        made.navigate = [this](SidebarItem page) { done.push_back("go " + key(page).toStdString()); };
        made.showPort = [this](const ListeningPort &port) { done.push_back("show " + port.id()); };
        made.close = [this] { done.emplace_back("close"); };
        return made;
    }

    void show() {
        component = std::make_unique<QQmlComponent>(&engine);
        component->setData(
            "import QtQuick\nimport Tarnvale.Design\nimport Tarnvale.Palette\n"
            "Rectangle { id: root; required property PaletteController controller;"
            " width: 640; height: 480; color: Theme.page;"
            " RoundRect { anchors.fill: content; radius: Theme.radius16; color: Theme.surfaceRaised;"
            " strokeColor: Theme.panelStroke; strokeWidth: Theme.stroke }"
            " CommandPalette { id: content; objectName: 'palette'; controller: root.controller;"
            " x: 30; y: 30; width: implicitWidth; height: implicitHeight } }",
            QUrl(QStringLiteral("qrc:/page.qml")));
        QObject *root = component->createWithInitialProperties(
            {{QStringLiteral("controller"), QVariant::fromValue(palette.get())}});
        ASSERT_NE(root, nullptr) << component->errorString().toStdString();
        window.setContent(QUrl(), component.get(), root);
        window.show();
        window.requestActivate();
        draw();
    }

    void draw() {
        quiesce();
        ASSERT_FALSE(window.grabWindow().isNull());
        quiesce();
    }

    void type(const char *text) {
        for (const char *letter = text; *letter != '\0'; ++letter)
            QTest::keyClick(&window, *letter);
        draw();
    }
    void press(Qt::Key key, int times = 1) {
        for (int time = 0; time < times; ++time)
            QTest::keyClick(&window, key);
        draw();
    }

    /// The rows that lie in the list's bounds, from the top on.
    [[nodiscard]] std::vector<QQuickItem *> rows() const {
        std::vector<QQuickItem *> all = itemsOfType(window.rootObject(), "PaletteRowView");
        std::erase_if(all, [frame = frameOf(*content())](const QQuickItem *row) {
            return !frame.contains(frameOf(*row).center());
        });
        std::sort(all.begin(), all.end(),
                  [](const auto *one, const auto *other) { return one->y() < other->y(); });
        return all;
    }
    [[nodiscard]] static std::string textOf(const QQuickItem *item, const char *property) {
        return item->property(property).toString().toStdString();
    }
    [[nodiscard]] std::vector<std::string> titles() const {
        std::vector<std::string> all;
        for (const QQuickItem *row : rows())
            all.push_back(textOf(row, "title"));
        return all;
    }
    [[nodiscard]] const QQuickItem *highlighted() const {
        for (const QQuickItem *row : rows())
            if (row->property("isHighlighted").toBool())
                return row;
        return nullptr;
    }
    [[nodiscard]] QQuickItem *content() const {
        return window.rootObject()->findChild<QQuickItem *>(QStringLiteral("palette"));
    }
    void click(const QQuickItem *row) {
        clickOn(window, *row);
        draw();
    }

    QmlWarnings warnings;
    std::vector<std::string> done;
    std::unique_ptr<PaletteController> palette;
    QQmlEngine engine;
    std::unique_ptr<QQmlComponent> component;
    QQuickView window;
};

TEST_F(PaletteScene, theFieldHasTheKeyboardAtOnce) {
    EXPECT_EQ(palette->rowCount(), 60);
    type("open shop3");
    EXPECT_EQ(palette->query(), QStringLiteral("open shop3"));
    EXPECT_THAT(titles(), ElementsAre("Open shop3"));
    press(Qt::Key_Return);
    EXPECT_THAT(done, ElementsAre("close"));
    EXPECT_THAT(world.desktop.opened, ElementsAre("http://localhost:3003"));
}

TEST_F(PaletteScene, theHighlightIsAlwaysInSight) {
    EXPECT_EQ(textOf(highlighted(), "title"), "Open shop0");
    press(Qt::Key_Down, 30);
    ASSERT_NE(highlighted(), nullptr);
    EXPECT_EQ(textOf(highlighted(), "itemId"), "open-106:3006");
    press(Qt::Key_Down, 40);
    ASSERT_NE(highlighted(), nullptr) << "the last row";
    press(Qt::Key_Up, 80);
    ASSERT_NE(highlighted(), nullptr);
    EXPECT_EQ(textOf(highlighted(), "title"), "Open shop0");
    press(Qt::Key_Down, 50);
    type("s");
    ASSERT_NE(highlighted(), nullptr) << "typing goes back to the first row";
    EXPECT_EQ(textOf(highlighted(), "title"), "Open shop0");
}

TEST_F(PaletteScene, aKillFromEndToEndByKeyboard) {
    type("kill 3004");
    ASSERT_NE(highlighted(), nullptr);
    press(Qt::Key_Return);
    EXPECT_TRUE(highlighted()->property("isArmed").toBool());
    EXPECT_EQ(textOf(highlighted(), "note"), "Press ↩ again to kill shop4");
    EXPECT_THAT(done, IsEmpty());
    QKeyEvent held(QEvent::KeyPress, Qt::Key_Return, {}, QStringLiteral("\r"), true);
    QCoreApplication::sendEvent(&window, &held);
    EXPECT_THAT(done, IsEmpty()) << "a key that is held doesn't kill";
    press(Qt::Key_Backspace);
    EXPECT_EQ(palette->armed(), QString());
    type("4");
    press(Qt::Key_Return, 2);
    EXPECT_THAT(done, ElementsAre("close"));
    pass(std::chrono::seconds(5));
    ASSERT_EQ(world.processes.sent.size(), 1u);
    EXPECT_EQ(world.processes.sent[0].pid, 104);
}

TEST_F(PaletteScene, pagesAreOutOfSightUntilAWordIsTyped) {
    press(Qt::Key_Down, 100);
    EXPECT_EQ(palette->highlighted(), 59);
    type("go act");
    EXPECT_THAT(titles(), ElementsAre("Go to Activity"));
    press(Qt::Key_Enter);
    EXPECT_THAT(done, ElementsAre("close", "go activity"));
}

TEST_F(PaletteScene, clicksArmAndRun) {
    type("3001");
    const auto all = rows();
    ASSERT_EQ(titles(), (std::vector<std::string>{"Open shop1", "Show shop1", "Copy URL of shop1",
                                                  "Restart shop1", "Kill shop1"}));
    click(all[4]);
    EXPECT_EQ(highlighted(), all[4]);
    EXPECT_TRUE(all[4]->property("isArmed").toBool());
    EXPECT_THAT(done, IsEmpty());
    click(all[1]);
    EXPECT_THAT(done, ElementsAre("close", "show 101:3001"));
}

TEST_F(PaletteScene, nothingFoundIsSaid) {
    const double before = content()->height();
    type("no such thing");
    EXPECT_THAT(titles(), IsEmpty());
    EXPECT_LT(content()->height(), before);
    press(Qt::Key_Return);
    press(Qt::Key_Down);
    EXPECT_THAT(done, IsEmpty());
    press(Qt::Key_Escape);
    EXPECT_THAT(done, ElementsAre("close"));
}

TEST_F(PaletteScene, itIsAsTallAsItsRowsUpToALimit) {
    const double full = content()->implicitHeight();
    EXPECT_LE(full, 52 + 1 + 360);
    EXPECT_EQ(content()->implicitWidth(), 580);
    type("start stack");
    EXPECT_THAT(titles(), ElementsAre("Start everything"));
    EXPECT_EQ(content()->implicitHeight(), 52 + 1 + 44 + 12);
}

TEST_F(PaletteScene, aScreenReaderKnowsItsParts) {
    const QAccessibleInterface *const root = QAccessible::queryAccessibleInterface(content());
    ASSERT_NE(root, nullptr);
    EXPECT_EQ(root->text(QAccessible::Name), QStringLiteral("Command palette"));
    const QAccessibleInterface *const row = QAccessible::queryAccessibleInterface(rows().front());
    ASSERT_NE(row, nullptr);
    EXPECT_EQ(row->role(), QAccessible::ListItem);
    EXPECT_EQ(row->text(QAccessible::Name), QStringLiteral("Open shop0, localhost:3000"));
}

TEST_F(PaletteScene, theArrowsWorkOnWhileScansComeIn) {
    press(Qt::Key_Down, 7);
    world.machine.end(100);
    scan();
    draw();
    EXPECT_EQ(palette->highlighted(), 7);
    ASSERT_NE(highlighted(), nullptr);
    EXPECT_EQ(textOf(highlighted(), "itemId"), "copy-102:3002");
    press(Qt::Key_Return);
    EXPECT_THAT(world.clipboard.texts, ElementsAre("http://localhost:3002"));
}

/// Writes what is seen to a folder, when one is given: to look at.
TEST_F(PaletteScene, picturesCanBeTaken) {
    const QString folder = qEnvironmentVariable("TARNVALE_PICTURES");
    if (folder.isEmpty())
        GTEST_SKIP() << "TARNVALE_PICTURES names no folder";
    const auto take = [&](const char *name) {
        ASSERT_TRUE(window.grabWindow().save(folder + QLatin1Char('/') + QLatin1String(name) +
                                             QStringLiteral(".png")));
    };
    press(Qt::Key_Down);
    take("palette");
    type("3004");
    press(Qt::Key_Down, 4);
    press(Qt::Key_Return);
    take("palette-armed");
    type("zzz");
    take("palette-nothing");
}

} // namespace
} // namespace tarnvale
