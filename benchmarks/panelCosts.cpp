// What the application costs its user, one measure a run; prints one line of whole numbers in microseconds.
//
//   benchmark-panel start EXECUTABLE   from the start of the process to its icon in the tray
//   benchmark-panel hotkey ROUNDS      from the press of Alt+Super+P to the panel's first pixels; the
//                                      application runs
//   benchmark-panel scroll ROWS        the slowest and the middle frame while a list of that many rows is
//                                      scrolled

#include "ListMachine.h"
#include "NoPlatform.h"
#include "XUser.h"

#include "commands/hotkey/CommandBinding.h"
#include "presentation/panel/MenuBarController.h"
#include "presentation/panel/registerPanel.h"
#include "store/PortStore.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QProcess>
#include <QQuickItem>
#include <QTimer>

#include <algorithm>
#include <memory>
#include <unistd.h>

namespace tarnvale {
namespace {

using namespace std::chrono_literals;

qint64 microseconds(const QElapsedTimer &timer) {
    return timer.nsecsElapsed() / 1000;
}

/// A desktop's list of tray icons, as far as an application needs one.
class Watcher : public QDBusVirtualObject {
public:
    std::function<void()> onRegistered;

    [[nodiscard]] QString introspect(const QString &) const override { return {}; }

    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override {
        if (message.member() == QStringLiteral("RegisterStatusNotifierItem")) {
            onRegistered();
            connection.send(message.createReply());
            return true;
        }
        if (message.member() == QStringLiteral("Get"))
            connection.send(message.createReply(QVariant::fromValue(QDBusVariant(true))));
        else
            connection.send(message.createReply(QVariantMap()));
        return true;
    }
};

int measureStart(const QString &executable) {
    QDBusConnection bus = QDBusConnection::sessionBus();
    Watcher watcher;
    QElapsedTimer timer;
    qint64 passed = -1;
    watcher.onRegistered = [&] {
        passed = microseconds(timer);
        QCoreApplication::quit();
    };
    if (!bus.registerVirtualObject(QStringLiteral("/StatusNotifierWatcher"), &watcher) ||
        !bus.registerService(QStringLiteral("org.kde.StatusNotifierWatcher")))
        fail("the bus is taken");
    QProcess process;
    process.setStandardErrorFile(QProcess::nullDevice());
    timer.start();
    process.start(executable, {});
    QTimer::singleShot(10s, [] { QCoreApplication::quit(); });
    QCoreApplication::exec();
    process.terminate();
    process.waitForFinished();
    if (passed < 0)
        fail("no icon came");
    print({passed});
    return 0;
}

/// The colour near the top right corner, where the panel is.
std::uint32_t cornerOf(XUser &user) {
    return user.pixel(user.width() - 200, 30);
}

void waitForPixel(XUser &user, std::uint32_t ground, bool isGround) {
    QElapsedTimer timer;
    timer.start();
    while ((cornerOf(user) == ground) != isGround) {
        if (timer.elapsed() > 5000)
            fail(isGround ? "the panel didn't go" : "the panel didn't come");
        usleep(500);
    }
}

int measureHotKey(int rounds) {
    constexpr std::uint8_t alt = 64; // keycodes of every X server on Linux: evdev's plus 8
    constexpr std::uint8_t super = 133;
    constexpr std::uint8_t p = 33;
    constexpr int rest = 400'000; // microseconds; the panel doesn't open right after it closed
    XUser user;
    const std::uint32_t ground = cornerOf(user);
    std::vector<std::int64_t> times;
    for (int round = 0; round < rounds; ++round) {
        for (const std::uint8_t held : {alt, super})
            user.key(held, true);
        QElapsedTimer timer;
        timer.start();
        user.key(p, true);
        waitForPixel(user, ground, false);
        times.push_back(microseconds(timer));
        user.key(p, false);
        usleep(rest);
        user.key(p, true);
        user.key(p, false);
        for (const std::uint8_t held : {alt, super})
            user.key(held, false);
        waitForPixel(user, ground, true);
        usleep(rest);
    }
    print(times);
    return 0;
}

QQuickItem *findList(QQuickItem *item) {
    if (QByteArrayView(item->metaObject()->className()).contains("QQuickListView") &&
        item->property("count").toInt() > 50)
        return item;
    for (QQuickItem *child : item->childItems())
        if (QQuickItem *found = findList(child))
            return found;
    return nullptr;
}

void pass(std::chrono::milliseconds time) {
    QEventLoop loop;
    QTimer::singleShot(time, &loop, &QEventLoop::quit);
    loop.exec();
}

int measureScroll(int rows) {
    ListMachine machine(rows);
    NoPlatform platform(machine, NoPlatform::Time::passes);
    const Platform parts = platform.platform();
    PortStore store(parts);
    GlobalHotKey hotKey(parts.settings, std::make_unique<CommandBinding>("none"));
    QQmlEngine engine;
    registerPanel(engine);
    MenuBarController menuBar(store, parts, engine, hotKey, {}, QDBusConnection(QStringLiteral("none")));
    store.setShowAll(true);
    pass(500ms);
    menuBar.open();
    pass(1000ms);
    QQuickWindow &window = menuBar.panel();
    QQuickItem *list = findList(window.contentItem());
    if (list == nullptr)
        fail("there is no list");
    std::vector<std::int64_t> times;
    const double end = list->property("contentHeight").toDouble() - list->height();
    constexpr double step = 40;
    for (double y = 0; y < end; y += step) {
        list->setProperty("contentY", y);
        QElapsedTimer timer;
        timer.start();
        QEvent update(QEvent::UpdateRequest);
        QCoreApplication::sendEvent(&window, &update); // polishes, synchronises and paints
        times.push_back(microseconds(timer));
        QCoreApplication::processEvents();
    }
    std::sort(times.begin(), times.end());
    print({times.back(), times[times.size() / 2]});
    return 0;
}

int run(const QStringList &words) {
    if (words.size() != 3)
        fail("usage: benchmark-panel start EXECUTABLE | hotkey ROUNDS | scroll ROWS");
    if (words[1] == QStringLiteral("start"))
        return measureStart(words[2]);
    if (words[1] == QStringLiteral("hotkey"))
        return measureHotKey(words[2].toInt());
    return measureScroll(words[2].toInt());
}

} // namespace
} // namespace tarnvale

int main(int argc, char **argv) {
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    QApplication application(argc, argv);
    QGuiApplication::setQuitOnLastWindowClosed(false);
    return tarnvale::run(QCoreApplication::arguments());
}
