// Drives the store from a terminal, with the real platform below it: one command a line.
//
//   ports [all]                 the visible ports, or every one
//   stop|restart|watch|share|unshare|save|open|reveal|focus|log PORT
//   path PORT PATH              what is asked for in health checks
//   look                        as if the panel were opened, or closed
//   launch FOLDER COMMAND...    runs a command as the user's terminal would
//   stacks, start NAME, delete NAME, sessions, quit

#include "platform/Desktop.h"
#include "platform/SystemPlatform.h"
#include "store/PortSession.h"
#include "store/PortStore.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <algorithm>
#include <functional>
#include <iostream>
#include <map>
#include <sstream>
#include <unistd.h>

namespace tarnvale {
namespace {

class PrintedClipboard : public Clipboard {
public:
    void setText(const std::string &text) override { std::cout << "copied: " << text << std::endl; }
};

class Driver : public QObject {
public:
    Driver()
        : m_platform(m_clipboard),
          m_store(m_platform.platform()),
          m_input(STDIN_FILENO, QSocketNotifier::Read) {
        connect(&m_store, &PortStore::errorChanged, this, [this] {
            std::cout << "error: " << m_store.error().value_or(QStringLiteral("none")).toStdString()
                      << std::endl;
        });
        connect(&m_store, &PortStore::tunnelsChanged, this, [this] {
            for (const auto &[port, tunnel] : m_store.tunnels())
                std::cout << "tunnel " << port << ": " << tunnel.url.value_or("starting") << std::endl;
        });
        m_store.openWindow = [] { std::cout << "the window would open" << std::endl; };
        connect(&m_input, &QSocketNotifier::activated, this, [this] { read(); });
    }

private:
    void read() {
        std::string line;
        if (!std::getline(std::cin, line) || line == "quit") {
            QCoreApplication::quit();
            return;
        }
        std::istringstream words(line);
        std::string verb;
        words >> verb;
        run(verb, words);
        if (std::cin.rdbuf()->in_avail() > 0) // more came with it, of which nobody will tell
            QMetaObject::invokeMethod(
                this, [this] { read(); }, Qt::QueuedConnection);
    }

    void run(const std::string &verb, std::istringstream &words) {
        const std::map<std::string, std::function<void(const ListeningPort &)>> onPort{
            {"stop", [this](const ListeningPort &port) { m_store.stop(port); }},
            {"restart", [this](const ListeningPort &port) { m_store.restart(port); }},
            {"watch", [this](const ListeningPort &port) { m_store.toggleWatch(port); }},
            {"share", [this](const ListeningPort &port) { m_store.share(port); }},
            {"unshare", [this](const ListeningPort &port) { m_store.stopSharing(port.port); }},
            {"save", [this](const ListeningPort &port) { m_store.saveStack(port); }},
            {"open", [this](const ListeningPort &port) { m_store.openInBrowser(port); }},
            {"reveal", [this](const ListeningPort &port) { m_store.reveal(port); }},
            {"focus", [this](const ListeningPort &port) { m_store.focusHostApp(port); }},
            {"log", [this](const ListeningPort &port) { printLog(port); }},
            {"path",
             [this, &words](const ListeningPort &port) {
                 std::string path;
                 words >> path;
                 m_store.setHealthPath(path, port);
             }},
        };
        std::int64_t number = 0;
        if (const auto action = onPort.find(verb); action != onPort.end() && words >> number)
            withPort(number, action->second);
        else if (verb == "ports")
            printPorts(words.str().find("all") != std::string::npos);
        else if (verb == "launch")
            launch(words);
        else if (verb == "start" || verb == "delete")
            withStack(words, verb == "start");
        else if (verb == "stacks")
            printStacks();
        else if (verb == "sessions")
            printSessions();
        else if (verb == "look")
            m_store.setMenuOpen(!m_store.isMenuOpen());
        else if (!verb.empty())
            std::cout << "what is '" << verb << "'?" << std::endl;
    }

    void withPort(std::int64_t number, const std::function<void(const ListeningPort &)> &action) {
        const auto &ports = m_store.ports();
        const auto found = std::find_if(ports.begin(), ports.end(),
                                        [&](const ListeningPort &port) { return port.port == number; });
        if (found == ports.end())
            std::cout << "nothing listens on " << number << std::endl;
        else
            action(*found);
    }

    void withStack(std::istringstream &words, bool isStart) {
        std::string name;
        std::getline(words >> std::ws, name);
        const auto stacks = m_store.stacks();
        for (const Stack &stack : stacks) {
            if (stack.name != name)
                continue;
            if (isStart)
                m_store.startStack(stack);
            else
                m_store.deleteStack(stack.id);
        }
    }

    void launch(std::istringstream &words) {
        std::string folder;
        std::string command;
        words >> folder;
        std::getline(words >> std::ws, command);
        m_store.launch(command, folder, {});
    }

    void printPorts(bool all) {
        for (const ListeningPort &port : all ? m_store.ports() : m_store.visiblePorts()) {
            const auto health = m_store.health().find(port.id());
            std::cout << port.id() << "  " << port.title() << "  " << port.args.value_or("-") << "  "
                      << (health == m_store.health().end() ? "" : health->second.summary()) << std::endl;
        }
        std::cout << "." << std::endl;
    }

    void printLog(const ListeningPort &port) {
        const auto source = m_store.logSource(port);
        std::cout << (source ? source->path + " " + source->container : "no log") << std::endl;
    }

    void printStacks() {
        for (const Stack &stack : m_store.stacks()) {
            std::cout << stack.name << std::endl;
            for (const Stack::Command &command : stack.commands)
                std::cout << "    " << command.cwd << "$ " << command.args << std::endl;
        }
    }

    void printSessions() {
        for (const SessionDay &day : groupSessions(sessions(m_store.events()), false)) {
            std::cout << day.day.toString(Qt::ISODate).toStdString() << std::endl;
            for (const SessionGroup &group : day.groups)
                std::cout << "    " << group.title << ": " << group.sessions.size()
                          << (group.sessions.front().isRunning ? " running" : "") << std::endl;
        }
    }

    PrintedClipboard m_clipboard;
    SystemPlatform m_platform;
    PortStore m_store;
    QSocketNotifier m_input;
};

} // namespace
} // namespace tarnvale

int main(int argc, char **argv) {
    const QCoreApplication application(argc, argv);
    std::ios::sync_with_stdio(false);
    std::cin.tie(nullptr);
    tarnvale::Driver driver;
    return QCoreApplication::exec();
}
