// What the main window costs its user, one measure a run; prints one line of whole numbers in microseconds.
//
//   benchmark-window open ROUNDS    from the call on the bus to the window's first pixels, closing it after
//                                   each round; the application runs
//   benchmark-window show           the same once; the window stays
//   benchmark-window close          closes it by its key
//   benchmark-window pages PORTS    the slowest and the middle change of the page
//   benchmark-window search PORTS   the slowest and the middle key typed into the search

#include "ListMachine.h"
#include "NoPlatform.h"
#include "XUser.h"

#include "commands/hotkey/CommandBinding.h"
#include "commands/hotkey/GlobalHotKey.h"
#include "presentation/window/MainWindowController.h"
#include "presentation/window/registerWindow.h"
#include "store/PortStore.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>

#include <unistd.h>

namespace tarnvale {
namespace {

using namespace std::chrono_literals;
using Times = std::vector<std::int64_t>;

std::int64_t microseconds(const QElapsedTimer &timer) {
    return timer.nsecsElapsed() / 1000;
}

/// The colour at the middle of the screen, where the window is.
std::uint32_t middleOf(XUser &user) {
    return user.pixel(user.width() / 2, user.height() / 2);
}

void waitForPixel(XUser &user, std::uint32_t ground, bool isGround) {
    QElapsedTimer timer;
    timer.start();
    while ((middleOf(user) == ground) != isGround) {
        if (timer.elapsed() > 10'000)
            fail(isGround ? "the window didn't go" : "the window didn't come");
        usleep(500);
    }
}

/// As the tray's menu and a second start do.
std::int64_t open(XUser &user, std::uint32_t ground) {
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("dev.tarnvale.Tarnvale"), QStringLiteral("/dev/tarnvale/Tarnvale"),
        QStringLiteral("org.freedesktop.Application"), QStringLiteral("Activate"));
    call << QVariantMap();
    QElapsedTimer timer;
    timer.start();
    if (!QDBusConnection::sessionBus().send(call))
        fail("there is no bus");
    waitForPixel(user, ground, false);
    return microseconds(timer);
}

void close(XUser &user, std::uint32_t ground) {
    constexpr std::uint8_t control = 37;
    constexpr std::uint8_t w = 25;
    user.key(control, true);
    user.key(w, true);
    user.key(w, false);
    user.key(control, false);
    waitForPixel(user, ground, true);
}

int measureOpening(int rounds) {
    constexpr int rest = 1'000'000; // microseconds
    XUser user;
    const std::uint32_t ground = middleOf(user);
    Times times;
    for (int round = 0; round < rounds; ++round) {
        times.push_back(open(user, ground));
        usleep(rest);
        close(user, ground);
        usleep(rest);
    }
    print(times);
    return 0;
}

void pass(std::chrono::milliseconds time) {
    QEventLoop loop;
    QTimer::singleShot(time, &loop, &QEventLoop::quit);
    loop.exec();
}

/// The window of this process on a machine with many servers.
class ListedWindow {
public:
    explicit ListedWindow(int ports) : m_machine(ports) {
        registerWindow(m_engine);
        m_store.setShowAll(true);
        pass(500ms);
        m_controller.show();
        pass(2s); // probes find nobody there
    }

    [[nodiscard]] MainViewController &view() { return m_controller.view(); }

    /// The time that `change` takes until it is painted.
    [[nodiscard]] std::int64_t timeOf(const std::function<void()> &change) {
        QElapsedTimer timer;
        timer.start();
        change();
        QCoreApplication::sendPostedEvents();
        QEvent update(QEvent::UpdateRequest);
        QCoreApplication::sendEvent(m_controller.window(), &update); // polishes, synchronises and paints
        const std::int64_t time = microseconds(timer);
        pass(50ms);
        return time;
    }

private:
    ListMachine m_machine;
    NoPlatform m_platform{m_machine, NoPlatform::Time::standsStill};
    Platform m_parts = m_platform.platform();
    PortStore m_store{m_parts};
    GlobalHotKey m_hotKey{m_parts.settings, std::make_unique<CommandBinding>("none")};
    QQmlEngine m_engine;
    MainWindowController m_controller{m_store, m_parts, m_engine, m_hotKey, {}};
};

int printExtremes(Times times) {
    std::sort(times.begin(), times.end());
    print({times.back(), times[times.size() / 2]});
    return 0;
}

int measurePages(int ports) {
    constexpr int rounds = 5;
    ListedWindow window(ports);
    Times times;
    for (int round = 0; round < rounds; ++round)
        for (const SidebarItem item : {SidebarItem::allPorts, SidebarItem::web, SidebarItem::stacks,
                                       SidebarItem::activity, SidebarItem::overview})
            times.push_back(window.timeOf([&] { window.view().select(item); }));
    return printExtremes(std::move(times));
}

int measureSearch(int ports) {
    constexpr int rounds = 3;
    const QString words = QStringLiteral("project 1234");
    ListedWindow window(ports);
    window.view().select(SidebarItem::allPorts);
    pass(500ms);
    Times times;
    for (int round = 0; round < rounds; ++round) {
        for (int length = 1; length <= words.size(); ++length)
            times.push_back(window.timeOf([&] { window.view().setQuery(words.left(length)); }));
        for (auto length = words.size() - 1; length >= 0; --length)
            times.push_back(window.timeOf([&] { window.view().setQuery(words.left(length)); }));
    }
    return printExtremes(std::move(times));
}

int run(const QStringList &words) {
    const QString what = words.value(1);
    const int number = words.value(2).toInt();
    XUser user;
    if (what == QStringLiteral("show")) {
        print({open(user, middleOf(user))});
        return 0;
    }
    if (what == QStringLiteral("close")) {
        close(user, user.pixel(1, 1));
        return 0;
    }
    if (number <= 0)
        fail("usage: benchmark-window open ROUNDS | show | close | pages PORTS | search PORTS");
    if (what == QStringLiteral("open"))
        return measureOpening(number);
    return what == QStringLiteral("pages") ? measurePages(number) : measureSearch(number);
}

} // namespace
} // namespace tarnvale

int main(int argc, char **argv) {
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    QApplication application(argc, argv);
    QGuiApplication::setQuitOnLastWindowClosed(false);
    return tarnvale::run(QCoreApplication::arguments());
}
