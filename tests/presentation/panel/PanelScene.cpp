#include "presentation/panel/PanelScene.h"

#include "platform/background.h"
#include "presentation/design/Appearance.h"
#include "presentation/design/ToolTips.h"
#include "presentation/panel/registerPanel.h"

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

PanelScene::PanelScene(const std::string &scene, bool isDark) {
    if (!setScene(world, scene))
        throw std::runtime_error("there is no scene of this name");
    noted = &m_warnings;
    m_earlier = qInstallMessageHandler(noteMessage);
    Appearance::instance().setOverride(isDark, true);
    store = std::make_unique<PortStore>(world.platform.platform(),
                                        [this](std::int64_t port, const std::string &,
                                               std::chrono::milliseconds) { return world.probe(port); });
    registerPanel(engine);
    PanelActions actions;
    actions.quit = [this] { ++quits; };
    actions.openWindow = [this] { ++windows; };
    actions.copyInstallCommand = [] {};
    menuBar = std::make_unique<MenuBarController>(*store, world.platform.platform(), engine, hotKey, actions,
                                                  QDBusConnection(QStringLiteral("none")));
    hotKey.setUp();
    settleStore();
}

PanelScene::~PanelScene() {
    settleStore();
    ToolTips::instance().hide();
    menuBar.reset();
    store.reset();
    Appearance::instance().setOverride(std::nullopt, std::nullopt);
    qInstallMessageHandler(m_earlier);
    noted = nullptr;
}

void PanelScene::settleStore() {
    const auto isIdle = [this] { return !store->isScanning() && backgroundThreads().isIdle(); };
    do {
        settle();
        if (!waitFor(isIdle))
            throw std::runtime_error("something goes on for ever");
        settle();
    } while (!isIdle());
}

void PanelScene::open() {
    menuBar->open();
    for (int times = 0; times < 2; ++times) {
        store->refresh();
        settleStore();
    }
    pass(1s);
    draw();
}

void PanelScene::pass(std::chrono::milliseconds time) {
    constexpr auto step = 100ms;
    for (auto passed = 0ms; passed < time; passed += step) {
        settleStore();
        world.platform.pass(step);
    }
    settleStore();
}

void PanelScene::draw() {
    settle();
    if (menuBar->panel().grabWindow().isNull())
        throw std::runtime_error("the panel can't be drawn");
    settle();
}

std::vector<QQuickItem *> PanelScene::visibleItems() const {
    std::vector<QQuickItem *> items;
    collect(menuBar->panel().contentItem(), items);
    return items;
}

std::vector<QQuickItem *> PanelScene::findAll(const char *type) const {
    std::vector<QQuickItem *> items = visibleItems();
    std::erase_if(items, [type](const QQuickItem *item) { return !isOfType(*item, type); });
    return items;
}

QQuickItem *PanelScene::find(const char *type, const QString &title) const {
    for (QQuickItem *item : findAll(type))
        if (title.isNull() || item->property("title").toString() == title)
            return item;
    return nullptr;
}

QPoint PanelScene::middleOf(const QQuickItem &item) {
    return item.mapToScene(QPointF(item.width() / 2, item.height() / 2)).toPoint();
}

void PanelScene::hover(const QPoint &place) {
    for (const QPoint &next : {place - QPoint(3, 3), place}) { // a pointer that doesn't move hovers nothing
        QTest::mouseMove(&menuBar->panel(), next);
        draw();
    }
}

void PanelScene::click(const QQuickItem &item, Qt::MouseButton button) {
    QTest::mouseClick(&menuBar->panel(), button, {}, middleOf(item));
    settleStore();
    draw();
}

} // namespace tarnvale
