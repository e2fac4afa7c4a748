// What the application costs its user, one measure a run; prints one line of whole numbers in microseconds.
//
//   benchmark-panel start EXECUTABLE     from the start of the process to its icon in the tray
//   benchmark-panel hotkey ROUNDS        from the press of Alt+Super+P to the panel's first pixels; the
//   application runs benchmark-panel scroll ROWS          the slowest and the middle frame while a list of
//   that many rows is scrolled

#include "ListMachine.h"
#include "NoPlatform.h"

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

#include <xcb/xcb.h>
#include <xcb/xtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <unistd.h>

namespace tarnvale {
namespace {

using namespace std::chrono_literals;

[[noreturn]] void fail(const char *reason) {
    std::fprintf(stderr, "benchmark-panel: %s\n", reason);
    std::exit(1);
}

void print(const std::vector<qint64> &numbers) {
    for (const qint64 number : numbers)
        std::printf("%lld ", static_cast<long long>(number));
    std::printf("\n");
}

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

/// The keyboard and the screen of an X server, as a user has them.
class XUser {
public:
    XUser() : m_connection(xcb_connect(nullptr, nullptr)) {
        if (xcb_connection_has_error(m_connection) != 0)
            fail("there is no X server");
        m_screen = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data;
    }
    XUser(const XUser &) = delete;
    XUser &operator=(const XUser &) = delete;
    ~XUser() { xcb_disconnect(m_connection); }

    void key(std::uint8_t code, bool isPress) {
        xcb_test_fake_input(m_connection, isPress ? XCB_KEY_PRESS : XCB_KEY_RELEASE, code, 0, m_screen->root,
                            0, 0, 0);
        xcb_flush(m_connection);
    }

    /// The pixel near the top right corner, where the panel is.
    [[nodiscard]] std::uint32_t pixel() {
        const auto asked =
            xcb_get_image(m_connection, XCB_IMAGE_FORMAT_Z_PIXMAP, m_screen->root,
                          static_cast<std::int16_t>(m_screen->width_in_pixels - 200), 30, 1, 1, ~0U);
        const std::unique_ptr<xcb_get_image_reply_t, decltype(&std::free)> reply(
            xcb_get_image_reply(m_connection, asked, nullptr), &std::free);
        if (!reply || xcb_get_image_data_length(reply.get()) < 4)
            fail("the screen can't be read");
        std::uint32_t value = 0;
        std::copy_n(xcb_get_image_data(reply.get()), sizeof value, reinterpret_cast<std::uint8_t *>(&value));
        return value & 0xFFFFFF;
    }

private:
    xcb_connection_t *m_connection;
    xcb_screen_t *m_screen;
};

void waitForPixel(XUser &user, std::uint32_t ground, bool isGround) {
    QElapsedTimer timer;
    timer.start();
    while ((user.pixel() == ground) != isGround) {
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
    const std::uint32_t ground = user.pixel();
    std::vector<qint64> times;
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
    std::vector<qint64> times;
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
