// A start of the application as far as others meet it: tells "first" on standard output when it is, then each
// thing it is asked to do, and ends with "quit". Words: "late" starts the application only after a line on
// the standard input, "hang" and "die" do so as soon as it is asked something, "service" asks the first for
// nothing, "action NAME" asks for that.

#include "commands/automation/Automation.h"
#include "commands/automation/SingleInstance.h"
#include "platform/Desktop.h"

#include <QCoreApplication>
#include <QStringList>

#include <cstdio>
#include <cstdlib>
#include <unistd.h>

namespace tarnvale {
namespace {

class NoDesktop : public Desktop {
public:
    void openUrl(const std::string &) override {}
    void reveal(const std::string &) override {}
    void openLog(const std::string &) override {}
    [[nodiscard]] bool focusApplication(const std::string &, Pid) override { return false; }
    [[nodiscard]] std::string applicationName(const std::string &) const override { return {}; }
};

void say(const std::string &line) {
    std::printf("%s\n", line.c_str());
    std::fflush(stdout);
}

ApplicationActions actionsFor(const QStringList &words) {
    const auto note = [words](const std::string &word) {
        return [words, word](const QString &token) {
            say(word + " " + token.toStdString());
            if (words.contains(QStringLiteral("die")))
                _exit(1);
            while (words.contains(QStringLiteral("hang")))
                pause();
        };
    };
    return {.activate = note("activate"),
            .togglePanel = note("toggle"),
            .showWindow = {},
            .tell = {},
            .quit = [] { QCoreApplication::quit(); }};
}

std::optional<ApplicationRequest> requestOf(const QStringList &words) {
    if (words.contains(QStringLiteral("service")))
        return std::nullopt;
    const auto action = words.indexOf(QStringLiteral("action"));
    return ApplicationRequest{.action = action < 0 ? QString() : words.value(action + 1),
                              .parameters = {},
                              .activationToken = activationTokenOfThisStart()};
}

int run(const QStringList &words) {
    NoDesktop desktop;
    Automation automation(desktop, QDBusConnection::sessionBus());
    SingleInstance instance(automation.application(), QDBusConnection::sessionBus(),
                            qEnvironmentVariable("TEST_TEMPORARY"));
    const auto patience = std::chrono::milliseconds(qEnvironmentVariableIntValue("TEST_PATIENCE"));
    if (const auto status = instance.start(requestOf(words), patience))
        return *status;
    say("first");
    if (words.contains(QStringLiteral("late")))
        static_cast<void>(std::getchar());
    automation.application().start(actionsFor(words));
    return QCoreApplication::exec();
}

} // namespace
} // namespace tarnvale

int main(int argc, char **argv) {
    const QCoreApplication application(argc, argv);
    return tarnvale::run(QCoreApplication::arguments());
}
