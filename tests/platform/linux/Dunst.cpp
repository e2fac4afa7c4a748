#include "platform/linux/Dunst.h"

#include "support/ManualClock.h"

#include <filesystem>

namespace tarnvale {

namespace {

constexpr std::string_view configuration = "[global]\n"
                                           "follow = none\n"
                                           "width = 300\n"
                                           "height = 200\n"
                                           "origin = top-left\n"
                                           "offset = 0x0\n"
                                           "mouse_left_click = do_action, close_current\n"
                                           "markup = full\n"
                                           "format = \"%s\\n%b\"\n";

} // namespace

std::string Dunst::problem() const {
    for (const char *program : {"/usr/bin/dunst", "/usr/bin/dunstctl"})
        if (!std::filesystem::exists(program))
            return std::string(program) + " isn't installed";
    return m_bus.isRunning() && m_display.isRunning() ? "" : "dbus-daemon, Xvfb or openbox isn't installed";
}

bool Dunst::start() {
    // The menu is a program that gets the choices and prints one.
    const std::string menu =
        m_folder.writeScript("menu", "exec grep -F -m1 -- \"$(cat '" + m_folder.path("choice") + "')\"\n");
    const std::string file = m_folder.write("dunstrc", std::string(configuration) + "dmenu = " + menu + "\n");
    m_process = std::make_unique<TestProcess>(
        std::vector<std::string>{"/usr/bin/dunst", "-config", file},
        environmentWith({"DISPLAY=" + m_display.name(), "DBUS_SESSION_BUS_ADDRESS=" + m_bus.address()}));
    return eventually([this] { return control({"count"}).status == 0; });
}

ProgramRun Dunst::control(const std::vector<std::string> &words) const {
    std::vector<std::string> arguments{"/usr/bin/env", "DBUS_SESSION_BUS_ADDRESS=" + m_bus.address(),
                                       "/usr/bin/dunstctl"};
    arguments.insert(arguments.end(), words.begin(), words.end());
    return runProgram(arguments);
}

void Dunst::choose(std::string_view title) const {
    m_folder.write("choice", title);
    static_cast<void>(control({"context"}));
}

bool Dunst::isDisplayed(std::string_view count) const {
    return waitFor([&] { return control({"count", "displayed"}).output.starts_with(count); });
}

} // namespace tarnvale
