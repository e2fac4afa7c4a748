#include "presentation/window/WindowScene.h"

#include "presentation/design/ToolTips.h"
#include "presentation/window/registerWindow.h"

#include <QAccessible>
#include <QApplication>
#include <QMenu>

#include <stdexcept>

namespace tarnvale {

WindowScene::WindowScene(const std::string &scene, const std::function<void(DemoWorld &)> &prepare,
                         const ScreenLook &look)
    : StoreScreen(scene, look), m_earlierHome(qgetenv("HOME")) {
    qputenv("HOME", QByteArray::fromStdString(home.path()));
    world.platform.settings.values["hasSeenWelcome"] = true;
    start(prepare);
    hotKey = std::make_unique<GlobalHotKey>(world.platform.settings, std::make_unique<FakeRegistrar>());
    hotKey->setUp();
    registerWindow(engine);
    const auto note = [this](const char *what) { return [this, what] { done.emplace_back(what); }; };
    controller = std::make_unique<MainWindowController>(*store, world.platform.platform(), engine, *hotKey,
                                                        WindowActions{.openSettings = note("settings"),
                                                                      .checkForUpdates = {},
                                                                      .copyInstallCommand = note("copy"),
                                                                      .quit = note("quit")});
    settleAll();
    controller->show();
    scan();
    scan();
    draw();
}

WindowScene::~WindowScene() {
    settleAll();
    ToolTips::instance().hide();
    controller.reset();
    qputenv("HOME", m_earlierHome);
}

void WindowScene::inspect(std::int64_t port) {
    for (const ListeningPort &each : store->ports())
        if (each.port == port)
            view().showPort(each);
    draw();
    if (!inspector().isPresent())
        throw std::runtime_error("port " + std::to_string(port) + " can't be inspected");
}

bool isWithin(const QQuickItem *item, const QQuickItem *other) {
    for (; item != nullptr; item = item->parentItem())
        if (item == other)
            return true;
    return false;
}

QQuickItem *sidebarRow(const WindowScene &scene, const char *key) {
    return scene.find("SidebarRowView", QLatin1String(key), "itemKey");
}

QQuickItem *focused(const WindowScene &scene) {
    return scene.window().activeFocusItem();
}

QQuickItem *searchInput(const WindowScene &scene) {
    return scene.find("SearchField")->property("input").value<QQuickItem *>();
}

QString nameOf(QQuickItem *item) {
    QAccessibleInterface *face = QAccessible::queryAccessibleInterface(item);
    return face == nullptr ? QString() : face->text(QAccessible::Name);
}

QMenu *openMenu() {
    return qobject_cast<QMenu *>(QApplication::activePopupWidget());
}

void closeMenu(const WindowScene &scene) {
    openMenu()->close();
    settle();
    scene.window().requestActivate(); // in memory a menu takes the keyboard with it
    settle();
}

void keepPicture(const WindowScene &scene, const std::string &name) {
    const QString folder = qEnvironmentVariable("TARNVALE_PICTURES");
    const QString file = folder + QLatin1Char('/') + QString::fromStdString(name) + QStringLiteral(".png");
    if (!folder.isEmpty() && !scene.window().grabWindow().save(file))
        throw std::runtime_error("the picture can't be saved");
}

} // namespace tarnvale
