// The panel over a made-up machine: to look at, to play with, and to take pictures of.
//
//   tarnvale-demo [--scene NAME] [--dark|--light] [--picture FILE] [--act ACTION]...
//
// Actions before the picture: search:TEXT, select:N, recent, arm, error:TEXT. The size of a picture's pixels
// follows QT_SCALE_FACTOR.

#include "commands/hotkey/FakeRegistrar.h"
#include "drive/DemoWorld.h"
#include "presentation/design/Appearance.h"
#include "presentation/panel/MenuBarController.h"
#include "presentation/panel/registerPanel.h"
#include "store/PortStore.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QPainter>
#include <QQuickWindow>
#include <QTimer>

#include <cstdio>
#include <iostream>

namespace tarnvale {
namespace {

using namespace std::chrono_literals;

class Demo {
public:
    explicit Demo(const QString &scene)
        : m_hotKey(m_world.platform.settings, std::make_unique<FakeRegistrar>()) {
        if (!setScene(m_world, scene.toStdString()))
            qFatal("there is no scene of this name");
        m_world.platform.desktop.running.clear();
        m_store = std::make_unique<PortStore>(
            m_world.platform.platform(), [this](std::int64_t port, const std::string &,
                                                std::chrono::milliseconds) { return m_world.probe(port); });
        registerPanel(m_engine);
        PanelActions actions;
        actions.quit = [] { QCoreApplication::quit(); };
        actions.copyInstallCommand = [] {};
        m_menuBar =
            std::make_unique<MenuBarController>(*m_store, m_world.platform.platform(), m_engine, m_hotKey,
                                                actions, QDBusConnection(QStringLiteral("none")));
        m_hotKey.setUp();
    }

    void open() {
        waitFor([this] { return m_store->hasScanned() && !m_store->isScanning(); });
        m_menuBar->open();
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

    void act(const QString &action) {
        PortListController &list = m_menuBar->list();
        const QString name = action.section(QLatin1Char(':'), 0, 0);
        const QString value = action.section(QLatin1Char(':'), 1);
        if (name == QStringLiteral("search"))
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
        QTimer timer;
        timer.setSingleShot(true);
        timer.start(500);
        waitFor([&timer] { return !timer.isActive(); });
    }

    /// The panel with its round corners; a grabbed window has lost what was transparent.
    [[nodiscard]] QImage picture() {
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

private:
    DemoWorld m_world;
    GlobalHotKey m_hotKey;
    QQmlEngine m_engine;
    std::unique_ptr<PortStore> m_store;
    std::unique_ptr<MenuBarController> m_menuBar;
    QTimer m_time;
};

int run(QApplication &application) {
    QCommandLineParser words;
    words.addHelpOption();
    words.addOption({QStringLiteral("scene"), QStringLiteral("What the machine has"), QStringLiteral("name"),
                     QStringLiteral("full")});
    words.addOption(
        {QStringLiteral("picture"), QStringLiteral("Writes a picture and ends"), QStringLiteral("file")});
    words.addOption(
        {QStringLiteral("act"), QStringLiteral("What is done before the picture"), QStringLiteral("action")});
    words.addOption({QStringLiteral("dark"), QStringLiteral("Dark colours")});
    words.addOption({QStringLiteral("light"), QStringLiteral("Light colours")});
    words.process(application);
    if (words.isSet(QStringLiteral("dark")) || words.isSet(QStringLiteral("light")))
        Appearance::instance().setOverride(words.isSet(QStringLiteral("dark")), std::nullopt);
    Demo demo(words.value(QStringLiteral("scene")));
    demo.open();
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
