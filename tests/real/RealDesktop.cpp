#include "real/RealDesktop.h"

#include "support/ManualClock.h"

#include <QDBusMessage>
#include <QDeadlineTimer>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <xcb/xcb.h>

namespace tarnvale {

namespace {

constexpr const char *python = "/usr/bin/python3"; // the one that sees the system's modules
constexpr const char *accessibilityBus = "/usr/libexec/at-spi-bus-launcher";
constexpr const char *compositor = "/usr/bin/picom";

struct Freed {
    void operator()(void *reply) const { std::free(reply); }
};
template<typename Reply> using Owned = std::unique_ptr<Reply, Freed>;
using Connection = std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)>;

bool hasCompositor(const std::string &display) {
    constexpr std::string_view selection = "_NET_WM_CM_S0";
    const Connection connection(xcb_connect(display.c_str(), nullptr), xcb_disconnect);
    const Owned<xcb_intern_atom_reply_t> atom(xcb_intern_atom_reply(
        connection.get(), xcb_intern_atom(connection.get(), 0, selection.size(), selection.data()), nullptr));
    if (!atom)
        return false;
    const Owned<xcb_get_selection_owner_reply_t> owner(xcb_get_selection_owner_reply(
        connection.get(), xcb_get_selection_owner(connection.get(), atom->atom), nullptr));
    return owner && owner->owner != XCB_WINDOW_NONE;
}

} // namespace

RealDesktop::RealDesktop(const std::string &size) : display(size), m_problem(findProblem()) {
    if (!m_problem.empty())
        return;
    for (const char *name : {"config", "state", "run", "home"})
        std::filesystem::create_directory(folder.path(name));
    std::filesystem::permissions(folder.path("run"), std::filesystem::perms::owner_all);
    startAccessibility();
}

RealDesktop::~RealDesktop() {
    if (!m_accessibility)
        return;
    kill(m_accessibility->pid(), SIGTERM); // so that it ends its own bus
    m_accessibility->waitForEnd();
}

std::string RealDesktop::findProblem() const {
    if (!bus.isRunning() || !display.isRunning())
        return "dbus-daemon, Xvfb or openbox isn't installed";
    for (const char *program : {python, accessibilityBus, "/usr/bin/xdotool", "/usr/bin/env"})
        if (!std::filesystem::exists(program))
            return std::string(program) + " isn't installed";
    if (runProgram({python, "-c", "import pyatspi"}).status != 0)
        return "python3-pyatspi isn't installed";
    return {};
}

void RealDesktop::startAccessibility() {
    m_accessibility = start({accessibilityBus, "--launch-immediately"});
    QDBusConnection connection = bus.connect();
    const auto answers = [&] {
        const QString name = QStringLiteral("org.a11y.Bus");
        QDBusMessage call = QDBusMessage::createMethodCall(name, QStringLiteral("/org/a11y/bus"), name,
                                                           QStringLiteral("GetAddress"));
        return connection.call(call).type() == QDBusMessage::ReplyMessage;
    };
    if (!eventually(answers))
        m_problem = "the bus of screen readers doesn't start";
}

std::vector<std::string> RealDesktop::environment() const {
    return {"DISPLAY=" + display.name(),
            "DBUS_SESSION_BUS_ADDRESS=" + bus.address(),
            "HOME=" + folder.path("home"),
            "XDG_CONFIG_HOME=" + folder.path("config"),
            "XDG_STATE_HOME=" + folder.path("state"),
            "XDG_RUNTIME_DIR=" + folder.path("run"),
            "XDG_DATA_HOME=" + folder.path("home") + "/share",
            "XDG_CURRENT_DESKTOP=",
            "XDG_SESSION_TYPE=x11",
            "WAYLAND_DISPLAY=",
            "AT_SPI_BUS_ADDRESS=",
            "QT_QPA_PLATFORM=xcb",
            "QT_SCALE_FACTOR=1",
            "QT_LOGGING_RULES=hotkey.info=true",
            "QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1",
            "ASAN_OPTIONS=detect_leaks=0", // Qt keeps pictures that nobody shows any more
            "LC_ALL=C.UTF-8",
            "SHELL=/bin/sh"};
}

ProgramRun RealDesktop::run(const std::vector<std::string> &words) const {
    std::vector<std::string> all{"/usr/bin/env"};
    for (const std::string &entry : environment())
        all.push_back(entry);
    all.insert(all.end(), words.begin(), words.end());
    return runProgram(all);
}

std::unique_ptr<TestProcess> RealDesktop::start(const std::vector<std::string> &words) const {
    return std::make_unique<TestProcess>(words, environmentWith(environment()));
}

bool RealDesktop::startCompositor() {
    if (!std::filesystem::exists(compositor))
        return false;
    m_compositor = start({compositor, "--config", "/dev/null", "--backend", "xrender"});
    return eventually([this] { return hasCompositor(display.name()); });
}

void RealDesktop::press(const std::vector<std::string> &keys) const {
    std::vector<std::string> words{"/usr/bin/xdotool", "key", "--delay", "30"};
    words.insert(words.end(), keys.begin(), keys.end());
    static_cast<void>(run(words));
}

void RealDesktop::type(const std::string &text) const {
    static_cast<void>(run({"/usr/bin/xdotool", "type", "--delay", "30", text}));
}

void RealDesktop::click(int x, int y) const {
    static_cast<void>(
        run({"/usr/bin/xdotool", "mousemove", std::to_string(x), std::to_string(y), "click", "1"}));
}

void RealDesktop::click(const AccessibleNode &node) const {
    click(node.x + node.width / 2, node.y + node.height / 2);
}

void RealDesktop::scroll(int x, int y, int clicks) const {
    static_cast<void>(
        run({"/usr/bin/xdotool", "mousemove", std::to_string(x), std::to_string(y), "click", "--delay", "15",
             "--repeat", std::to_string(std::abs(clicks)), clicks < 0 ? "4" : "5"}));
}

std::optional<std::uint32_t> RealDesktop::pixel(int x, int y) const {
    const Connection connection(xcb_connect(display.name().c_str(), nullptr), xcb_disconnect);
    if (xcb_connection_has_error(connection.get()) != 0)
        return std::nullopt;
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection.get())).data->root;
    const Owned<xcb_get_image_reply_t> reply(xcb_get_image_reply(
        connection.get(),
        xcb_get_image(connection.get(), XCB_IMAGE_FORMAT_Z_PIXMAP, root, static_cast<std::int16_t>(x),
                      static_cast<std::int16_t>(y), 1, 1, ~0U),
        nullptr));
    std::uint32_t value = 0;
    if (!reply || xcb_get_image_data_length(reply.get()) < static_cast<int>(sizeof value))
        return std::nullopt;
    std::copy_n(xcb_get_image_data(reply.get()), sizeof value, reinterpret_cast<std::uint8_t *>(&value));
    return value & 0xFFFFFF;
}

bool RealDesktop::shows(const std::function<bool(const AccessibleTree &)> &condition,
                        std::chrono::milliseconds timeout) {
    const auto holds = [&] {
        const ProgramRun read = run({python, TARNVALE_TESTS_FOLDER "/real/accessibleTree.py"});
        const auto tree = read.status == 0 ? parseAccessibleTree(read.output) : std::nullopt;
        if (tree)
            m_tree = *tree;
        return tree && condition(*tree);
    };
    const QDeadlineTimer deadline(timeout);
    while (!holds()) {
        if (deadline.hasExpired())
            return false;
        // The application gets the processor meanwhile, and whatever the test plays for it, its turn.
        static_cast<void>(waitFor([] { return false; }, std::chrono::milliseconds(100)));
    }
    return true;
}

bool RealDesktop::isPanelOpen() {
    return shows([](const AccessibleTree &tree) { return tree.isPanelOpen(); });
}

bool RealDesktop::isPanelClosed() {
    return shows([](const AccessibleTree &tree) {
        return !tree.nodes.empty() && tree.shown("frame", "Tarnvale") == nullptr;
    });
}

bool RealDesktop::isWindowOpen(const std::string &page) {
    return shows([&](const AccessibleTree &tree) { return tree.isWindowOpen(page); });
}

bool RealDesktop::isWindowClosed() {
    return shows([](const AccessibleTree &tree) { return !tree.nodes.empty() && tree.window() == nullptr; });
}

} // namespace tarnvale
