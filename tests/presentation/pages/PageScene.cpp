#include "presentation/pages/PageScene.h"

#include "platform/background.h"
#include "presentation/design/Appearance.h"
#include "presentation/design/ToolTips.h"
#include "presentation/pages/registerPages.h"

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

constexpr const char *overviewWindow = "OverviewPage {}";
constexpr const char *activityWindow = "ActivityPage {}";
constexpr const char *sitesWindow = "SitesPage {}";
constexpr const char *stacksWindow = R"(Item {
    id: root
    required property StacksController controller
    StacksPage {
        anchors.fill: parent
        controller: root.controller
    }
    Sheet {
        anchors.fill: parent
        title: "New Stack"
        isOpen: root.controller.newStack.isOpen
        sheet: NewStackSheet {
            controller: root.controller.newStack
        }
        onDismissed: root.controller.newStack.cancel()
    }
})";

} // namespace

PageScene::PageScene(const std::string &scene, const std::function<void(DemoWorld &)> &prepare, bool isDark) {
    if (!setScene(world, scene))
        throw std::runtime_error("there is no scene of this name");
    if (prepare)
        prepare(world);
    noted = &m_warnings;
    m_earlier = qInstallMessageHandler(noteMessage);
    Appearance::instance().setOverride(isDark, true);
    const Platform platform = world.platform.platform();
    store = std::make_unique<PortStore>(platform,
                                        [this](std::int64_t port, const std::string &,
                                               std::chrono::milliseconds) { return world.probe(port); });
    store->setWindowVisible(true);
    overview = std::make_unique<OverviewController>(
        *store, platform,
        OverviewLinks{.groups = [this] { return groupedRows(store->visiblePorts(), webTestOf(*store)); },
                      .onSelect = [this](const ListeningPort &port) { selected.push_back(port.id()); },
                      .showSection = [this](SidebarItem page) { pages.push_back(page); }});
    stacks = std::make_unique<StacksController>(*store, platform,
                                                [this](const auto &onDone) { onDone(folderToChoose); });
    activity = std::make_unique<ActivityController>(*store, platform);
    sites = std::make_unique<SitesController>(platform);
    registerPages(*view.engine());
    view.setResizeMode(QQuickView::SizeRootObjectToView);
    view.resize(1000, 760);
    scan();
    scan();
}

PageScene::~PageScene() {
    settleStore();
    ToolTips::instance().hide();
    delete view.rootObject();
    view.releaseResources(); // Qt keeps pictures that nobody shows any more
    overview.reset();
    stacks.reset();
    activity.reset();
    store.reset();
    Appearance::instance().setOverride(std::nullopt, std::nullopt);
    qInstallMessageHandler(m_earlier);
    noted = nullptr;
}

void PageScene::show(const char *qml, QObject *controller) {
    m_component = std::make_unique<QQmlComponent>(view.engine());
    m_component->setData(QByteArray("import QtQuick\nimport Tarnvale.Design\nimport Tarnvale.Pages\n") + qml,
                         QUrl(QStringLiteral("qrc:/page.qml")));
    if (m_component->isError()) // creating it all the same would crash Qt
        throw std::runtime_error(m_component->errorString().toStdString());
    QObject *root = m_component->createWithInitialProperties(
        {{QStringLiteral("controller"), QVariant::fromValue(controller)}});
    if (root == nullptr)
        throw std::runtime_error(m_component->errorString().toStdString());
    view.setContent(QUrl(), m_component.get(), root);
    view.setColor(Appearance::instance().isDark() ? QColor(0x1e, 0x1e, 0x21) : QColor(Qt::white));
    view.show();
    view.requestActivate();
    draw();
}

void PageScene::showOverview() {
    overview->setShown(true);
    show(overviewWindow, overview.get());
}

void PageScene::showStacks() {
    stacks->setShown(true);
    show(stacksWindow, stacks.get());
}

void PageScene::showActivity() {
    activity->setShown(true);
    show(activityWindow, activity.get());
}

void PageScene::showSites(const std::vector<LocalSites::Site> &found) {
    sites->setSites(found);
    show(sitesWindow, sites.get());
}

void PageScene::resize(int width, int height) {
    view.resize(width, height);
    draw();
}

void PageScene::settleStore() {
    const auto isIdle = [this] { return !store->isScanning() && backgroundThreads().isIdle(); };
    do {
        settle();
        if (!waitFor(isIdle))
            throw std::runtime_error("something goes on for ever");
        settle();
    } while (!isIdle());
}

void PageScene::scan() {
    store->refresh();
    settleStore();
}

void PageScene::pass(std::chrono::milliseconds time) {
    constexpr auto step = 100ms;
    for (auto passed = 0ms; passed < time; passed += step) {
        settleStore();
        world.platform.pass(step);
    }
    settleStore();
}

void PageScene::draw() {
    settleStore();
    if (view.grabWindow().isNull())
        throw std::runtime_error("the page can't be drawn");
    settle();
}

std::vector<QQuickItem *> PageScene::visibleItems() const {
    std::vector<QQuickItem *> items;
    collect(view.contentItem(), items);
    return items;
}

std::vector<QQuickItem *> PageScene::findAll(const char *type) const {
    std::vector<QQuickItem *> items = visibleItems();
    std::erase_if(items, [type](const QQuickItem *item) { return !isOfType(*item, type); });
    return items;
}

QQuickItem *PageScene::find(const char *type, const QString &title) const {
    for (QQuickItem *item : findAll(type))
        if (title.isNull() || item->property("title").toString() == title)
            return item;
    return nullptr;
}

QStringList PageScene::texts() const {
    QStringList result;
    for (const QQuickItem *item : visibleItems())
        if (isOfType(*item, "QQuickText") && !item->property("text").toString().isEmpty())
            result.append(item->property("text").toString());
    return result;
}

QPoint PageScene::middleOf(const QQuickItem &item) {
    return item.mapToScene(QPointF(item.width() / 2, item.height() / 2)).toPoint();
}

void PageScene::click(const QQuickItem *item, Qt::MouseButton button) {
    if (item == nullptr)
        throw std::runtime_error("what is to be clicked isn't there");
    QTest::mouseClick(&view, button, {}, middleOf(*item));
    draw();
}

void PageScene::press(Qt::Key key, Qt::KeyboardModifiers modifiers) {
    QTest::keyClick(&view, key, modifiers);
    draw();
}

void PageScene::type(const QString &text) {
    for (const QChar letter : text)
        QTest::keyClick(&view, static_cast<Qt::Key>(letter.toUpper().unicode()));
    draw();
}

} // namespace tarnvale
