#include "presentation/window/WindowScene.h"

#include "platform/background.h"
#include "presentation/design/Appearance.h"
#include "presentation/design/ToolTips.h"
#include "presentation/window/registerWindow.h"

#include <QAccessible>
#include <QApplication>
#include <QMenu>
#include <QTest>

#include <stdexcept>

namespace tarnvale {

namespace {

using namespace std::chrono_literals;

QStringList *noted = nullptr;

void noteMessage(QtMsgType type, const QMessageLogContext &, const QString &message) {
    const bool isOfOffscreen = message.startsWith(QStringLiteral("This plugin does not support"));
    if (type != QtDebugMsg && type != QtInfoMsg && !isOfOffscreen)
        noted->append(message);
}

void collect(QQuickItem *item, std::vector<QQuickItem *> &items) {
    if (!item->isVisible())
        return;
    items.push_back(item);
    const auto children = item->childItems();
    for (QQuickItem *child : children)
        collect(child, items);
}

bool isOfType(const QQuickItem &item, const char *type) {
    const QByteArray name(item.metaObject()->className());
    return name == type || name.startsWith(QByteArray(type) + "_QML");
}

} // namespace

WindowScene::WindowScene(const std::string &scene, const std::function<void(DemoWorld &)> &prepare,
                         const WindowLook &look)
    : m_earlierHome(qgetenv("HOME")) {
    qputenv("HOME", QByteArray::fromStdString(home.path()));
    if (!setScene(world, scene))
        throw std::runtime_error("there is no scene of this name");
    world.platform.settings.values["hasSeenWelcome"] = true;
    if (prepare)
        prepare(world);
    noted = &m_warnings;
    m_earlier = qInstallMessageHandler(noteMessage);
    Appearance::instance().setOverride(look.isDark, look.reducesMotion);
    const Platform platform = world.platform.platform();
    hotKey = std::make_unique<GlobalHotKey>(world.platform.settings, std::make_unique<FakeRegistrar>());
    hotKey->setUp();
    store = std::make_unique<PortStore>(platform,
                                        [this](std::int64_t port, const std::string &,
                                               std::chrono::milliseconds) { return world.probe(port); });
    registerWindow(engine);
    const auto note = [this](const char *what) { return [this, what] { done.emplace_back(what); }; };
    controller = std::make_unique<MainWindowController>(*store, platform, engine, *hotKey,
                                                        WindowActions{.openSettings = note("settings"),
                                                                      .checkForUpdates = {},
                                                                      .copyInstallCommand = note("copy"),
                                                                      .quit = note("quit")});
    settleStore();
    controller->show();
    scan();
    scan();
    draw();
}

WindowScene::~WindowScene() {
    settleStore();
    ToolTips::instance().hide();
    controller.reset();
    store.reset();
    Appearance::instance().setOverride(std::nullopt, std::nullopt);
    qInstallMessageHandler(m_earlier);
    noted = nullptr;
    qputenv("HOME", m_earlierHome);
}

void WindowScene::settleStore() {
    const auto isIdle = [this] { return !store->isScanning() && backgroundThreads().isIdle(); };
    do {
        settle();
        if (!waitFor(isIdle))
            throw std::runtime_error("something goes on for ever");
        settle();
    } while (!isIdle());
}

void WindowScene::scan() {
    store->refresh();
    settleStore();
}

void WindowScene::pass(std::chrono::milliseconds time) {
    constexpr auto step = 50ms;
    for (auto passed = 0ms; passed < time; passed += step) {
        settleStore();
        world.platform.pass(step);
    }
    settleStore();
}

void WindowScene::draw() {
    settleStore();
    if (window().grabWindow().isNull())
        throw std::runtime_error("the window can't be drawn");
    settle();
}

void WindowScene::resize(int width, int height) {
    window().resize(width, height);
    draw();
}

void WindowScene::inspect(std::int64_t port) {
    for (const ListeningPort &each : store->ports())
        if (each.port == port)
            view().showPort(each);
    draw();
    if (!inspector().isPresent())
        throw std::runtime_error("port " + std::to_string(port) + " can't be inspected");
}

std::vector<QQuickItem *> WindowScene::visibleItems() const {
    std::vector<QQuickItem *> items;
    collect(window().contentItem(), items);
    return items;
}

std::vector<QQuickItem *> WindowScene::findAll(const char *type) const {
    std::vector<QQuickItem *> items = visibleItems();
    std::erase_if(items, [type](const QQuickItem *item) { return !isOfType(*item, type); });
    return items;
}

QQuickItem *WindowScene::find(const char *type, const QString &value, const char *property) const {
    for (QQuickItem *item : findAll(type))
        if (value.isNull() || item->property(property).toString() == value)
            return item;
    return nullptr;
}

QStringList WindowScene::texts() const {
    QStringList result;
    for (const QQuickItem *item : visibleItems())
        if (item->inherits("QQuickText") && !item->property("text").toString().isEmpty())
            result.append(item->property("text").toString());
    return result;
}

QRectF WindowScene::frameOf(const QQuickItem &item) {
    return item.mapRectToScene(QRectF(0, 0, item.width(), item.height()));
}

QPoint WindowScene::middleOf(const QQuickItem &item) {
    return frameOf(item).center().toPoint();
}

void WindowScene::click(const QQuickItem *item, Qt::MouseButton button) {
    if (item == nullptr)
        throw std::runtime_error("what is to be clicked isn't there");
    QTest::mouseClick(&window(), button, {}, middleOf(*item));
    draw();
}

void WindowScene::hover(const QPoint &place) {
    for (const QPoint &next : {place - QPoint(3, 3), place}) { // a pointer that doesn't move hovers nothing
        QTest::mouseMove(&window(), next);
        draw();
    }
}

void WindowScene::press(Qt::Key key, Qt::KeyboardModifiers modifiers) {
    QTest::keyClick(&window(), key, modifiers);
    draw();
}

void WindowScene::type(const QString &text) {
    for (const QChar letter : text)
        QTest::keyClick(&window(), letter.toLatin1());
    draw();
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
