#include "presentation/pages/PageScene.h"

#include "presentation/design/Appearance.h"
#include "presentation/design/ToolTips.h"
#include "presentation/pages/registerPages.h"

#include <stdexcept>

namespace tarnvale {

namespace {

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

PageScene::PageScene(const std::string &scene, const std::function<void(DemoWorld &)> &prepare, bool isDark)
    : StoreScreen(scene, ScreenLook{.isDark = isDark}) {
    start(prepare);
    store->setWindowVisible(true);
    const Platform platform = world.platform.platform();
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
    settleAll();
    ToolTips::instance().hide();
    delete view.rootObject();
    view.releaseResources(); // Qt keeps pictures that nobody shows any more
    overview.reset();
    stacks.reset();
    activity.reset();
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

} // namespace tarnvale
