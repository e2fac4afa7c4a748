// The panel or the window over a made-up machine: to look at, to play with, and to take pictures of.
//
//   tarnvale-demo [--window [--size WxH]|--settings TAB] [--scene NAME] [--dark|--light] [--picture FILE]
//                 [--act ACTION]...
//
// Actions before the picture: search:TEXT, select:N, arm, error:TEXT; in the panel also recent; in the window
// page:KEY, sidebar, inspector, palette:TEXT, welcome, new:FOLDER, scroll:POINTS. The size of a picture's
// pixels follows QT_SCALE_FACTOR.

#include "commands/hotkey/FakeRegistrar.h"
#include "drive/DemoWorld.h"
#include "presentation/design/Appearance.h"
#include "presentation/panel/MenuBarController.h"
#include "presentation/panel/registerPanel.h"
#include "presentation/settings/SettingsWindow.h"
#include "presentation/shared/installWords.h"
#include "presentation/window/MainWindowController.h"
#include "presentation/window/registerWindow.h"
#include "store/PortStore.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QPainter>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTimer>

#include <cstdio>
#include <iostream>

namespace tarnvale {
namespace {

using namespace std::chrono_literals;

class Demo {
public:
    enum class Face { panel, window, settings };

    Demo(const QString &scene, Face face)
        : m_face(face), m_hotKey(m_world.platform.settings, std::make_unique<FakeRegistrar>()) {
        if (!setScene(m_world, scene.toStdString()))
            qFatal("there is no scene of this name");
        m_world.platform.desktop.running.clear();
        m_store = std::make_unique<PortStore>(
            m_world.platform.platform(), [this](std::int64_t port, const std::string &,
                                                std::chrono::milliseconds) { return m_world.probe(port); });
        m_world.platform.settings.values["hasSeenWelcome"] = true;
        registerPanel(m_engine);
        registerWindow(m_engine);
        PanelActions actions;
        actions.quit = [] { QCoreApplication::quit(); };
        actions.copyInstallCommand = [] {};
        m_menuBar =
            std::make_unique<MenuBarController>(*m_store, m_world.platform.platform(), m_engine, m_hotKey,
                                                actions, QDBusConnection(QStringLiteral("none")));
        m_hotKey.setUp();
        m_window = std::make_unique<MainWindowController>(
            *m_store, m_world.platform.platform(), m_engine, m_hotKey,
            WindowActions{.openSettings = [this] { settings().show(); },
                          .checkForUpdates = {},
                          .copyInstallCommand = [] {},
                          .quit = actions.quit});
        m_store->openWindow = [this] { m_window->show(); };
    }

    SettingsWindow &settings() {
        if (!m_settings)
            m_settings = std::make_unique<SettingsWindow>(
                m_engine, SettingsContext{.store = *m_store,
                                          .platform = m_world.platform.platform(),
                                          .hotKey = m_hotKey,
                                          .tray = m_menuBar->tray(),
                                          .bus = QDBusConnection(QStringLiteral("none")),
                                          .actions = {.version = QStringLiteral("0.1.0"),
                                                      .build = QStringLiteral("1"),
                                                      .copyInstallCommand = [] {},
                                                      .updates = {}}});
        return *m_settings;
    }

    void open() {
        waitFor([this] { return m_store->hasScanned() && !m_store->isScanning(); });
        if (m_face == Face::panel)
            m_menuBar->open();
        else
            m_window->show();
        waitFor([] { return true; });
        m_store->refresh();
        waitFor([this] { return !m_store->isScanning(); });
        pass(2500ms);
    }

    /// Lets real time pass, for animations, and that of the made-up machine.
    void pass(std::chrono::milliseconds time) {
        for (auto passed = 0ms; passed < time; passed += 50ms) {
            m_world.platform.pass(50ms);
            QTimer timer;
            timer.setSingleShot(true);
            timer.start(20);
            waitFor([&timer] { return !timer.isActive(); });
        }
    }

    void run() {
        QObject::connect(&m_time, &QTimer::timeout, [this] { m_world.platform.pass(100ms); });
        m_time.start(100);
    }

    /// Whether the window knows the action.
    bool actInWindow(const QString &name, const QString &value) {
        MainViewController &view = m_window->view();
        if (name == QStringLiteral("page"))
            view.navigate(value);
        else if (name == QStringLiteral("search"))
            view.setQuery(value);
        else if (name == QStringLiteral("select"))
            for (int step = 0; step < value.toInt(); ++step)
                view.ports()->moveSelection(1);
        else if (name == QStringLiteral("arm"))
            view.ports()->inspector()->stopInTwoSteps();
        else if (name == QStringLiteral("sidebar"))
            view.toggleSidebar();
        else if (name == QStringLiteral("inspector"))
            view.ports()->toggleInspector();
        else if (name == QStringLiteral("palette"))
            openPalette(value);
        else if (name == QStringLiteral("welcome"))
            view.showWelcome();
        else if (name == QStringLiteral("new"))
            m_window->stacks().newStack()->open(value.toStdString());
        else if (name == QStringLiteral("scroll"))
            scrollInspector(value.toInt());
        else
            return false;
        return true;
    }

    void openPalette(const QString &query) {
        m_window->view().togglePalette();
        m_window->palette().setQuery(query);
    }

    void scrollInspector(int points) {
        QList<QQuickItem *> items{m_window->window()->contentItem()};
        for (qsizetype i = 0; i < items.size(); ++i) {
            if (items[i]->objectName() == QStringLiteral("inspectorView"))
                items[i]->setProperty("contentY", points);
            items += items[i]->childItems();
        }
    }

    void act(const QString &action) {
        PortListController &list = m_menuBar->list();
        const QString name = action.section(QLatin1Char(':'), 0, 0);
        const QString value = action.section(QLatin1Char(':'), 1);
        if (m_face == Face::window && actInWindow(name, value))
            m_window->window()->requestUpdate();
        else if (name == QStringLiteral("search"))
            list.setQuery(value);
        else if (name == QStringLiteral("select"))
            for (int step = 0; step < value.toInt(); ++step)
                list.moveSelection(1);
        else if (name == QStringLiteral("recent"))
            list.setShowRecent(true);
        else if (name == QStringLiteral("arm"))
            list.stopInTwoSteps(list.selection());
        else if (name == QStringLiteral("error"))
            m_store->setError(value);
        else
            qFatal("there is no such action");
        m_menuBar->panel().requestUpdate();
        pass(1500ms);
    }

    [[nodiscard]] QImage picture() {
        if (m_face == Face::panel)
            return panelPicture();
        return m_face == Face::window ? m_window->window()->grabWindow() : settings().window()->grabWindow();
    }

    void resize(QSize size) { m_window->window()->resize(size); }

private:
    /// The panel with its round corners; a grabbed window has lost what was transparent.
    [[nodiscard]] QImage panelPicture() {
        constexpr double radius = 12;
        const QImage window = m_menuBar->panel().grabWindow();
        QImage picture(window.size(), QImage::Format_ARGB32_Premultiplied);
        picture.setDevicePixelRatio(window.devicePixelRatio());
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(QBrush(window));
        painter.drawRoundedRect(QRectF(QPointF(), window.deviceIndependentSize()), radius, radius);
        return picture;
    }

    Face m_face;
    DemoWorld m_world;
    GlobalHotKey m_hotKey;
    QQmlEngine m_engine;
    std::unique_ptr<PortStore> m_store;
    std::unique_ptr<MenuBarController> m_menuBar;
    std::unique_ptr<MainWindowController> m_window;
    std::unique_ptr<SettingsWindow> m_settings;
    QTimer m_time;
};

int run(QApplication &application) {
    installWords();
    QCommandLineParser words;
    words.addHelpOption();
    words.addOption({QStringLiteral("scene"), QStringLiteral("What the machine has"), QStringLiteral("name"),
                     QStringLiteral("full")});
    words.addOption(
        {QStringLiteral("picture"), QStringLiteral("Writes a picture and ends"), QStringLiteral("file")});
    words.addOption(
        {QStringLiteral("act"), QStringLiteral("What is done before the picture"), QStringLiteral("action")});
    words.addOption({QStringLiteral("window"), QStringLiteral("The window, not the panel")});
    words.addOption({QStringLiteral("size"), QStringLiteral("How large the window is"), QStringLiteral("WxH"),
                     QStringLiteral("1080x700")});
    words.addOption({QStringLiteral("settings"), QStringLiteral("The settings, at a tab: 0, 1 or 2"),
                     QStringLiteral("tab")});
    words.addOption({QStringLiteral("dark"), QStringLiteral("Dark colours")});
    words.addOption({QStringLiteral("light"), QStringLiteral("Light colours")});
    words.process(application);
    if (words.isSet(QStringLiteral("dark")) || words.isSet(QStringLiteral("light")))
        Appearance::instance().setOverride(words.isSet(QStringLiteral("dark")), std::nullopt);
    const bool isSettings = words.isSet(QStringLiteral("settings"));
    const bool isWindow = words.isSet(QStringLiteral("window"));
    Demo demo(words.value(QStringLiteral("scene")), isSettings ? Demo::Face::settings
                                                    : isWindow ? Demo::Face::window
                                                               : Demo::Face::panel);
    demo.open();
    if (isSettings)
        demo.settings().show(
            static_cast<SettingsController::Tab>(words.value(QStringLiteral("settings")).toInt()));
    if (isWindow) {
        const QStringList size = words.value(QStringLiteral("size")).split(QLatin1Char('x'));
        demo.resize(QSize(size.value(0).toInt(), size.value(1).toInt()));
        demo.pass(1000ms);
    }
    for (const QString &action : words.values(QStringLiteral("act")))
        demo.act(action);
    if (!words.isSet(QStringLiteral("picture"))) {
        demo.run();
        return QApplication::exec();
    }
    return demo.picture().save(words.value(QStringLiteral("picture"))) ? 0 : 1;
}

} // namespace
} // namespace tarnvale

int main(int argc, char **argv) {
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    QApplication application(argc, argv);
    return tarnvale::run(application);
}
