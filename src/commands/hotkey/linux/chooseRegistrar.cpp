#include "commands/hotkey/linux/chooseRegistrar.h"

#include "commands/hotkey/CommandBinding.h"
#include "commands/hotkey/FirstWorkingRegistrar.h"
#include "commands/hotkey/linux/KGlobalAccelRegistrar.h"
#include "commands/hotkey/linux/PortalHotKeyRegistrar.h"
#include "commands/hotkey/linux/X11HotKeyRegistrar.h"

namespace tarnvale {

HotKeySurroundings hotKeySurroundings(const std::function<std::string(const char *)> &variable,
                                      const QDBusConnection &bus) {
    const std::string type = variable("XDG_SESSION_TYPE");
    const bool isWayland = type == "wayland" || !variable("WAYLAND_DISPLAY").empty();
    return {.isWayland = isWayland, .display = variable("DISPLAY"), .bus = bus};
}

std::unique_ptr<HotKeyRegistrar> chooseRegistrar(const HotKeySurroundings &surroundings) {
    std::vector<std::unique_ptr<HotKeyRegistrar>> candidates;
    if (surroundings.isWayland) {
        candidates.push_back(std::make_unique<PortalHotKeyRegistrar>(surroundings.bus));
        candidates.push_back(std::make_unique<KGlobalAccelRegistrar>(surroundings.bus));
    } else {
        candidates.push_back(std::make_unique<X11HotKeyRegistrar>(surroundings.display));
    }
    candidates.push_back(std::make_unique<CommandBinding>(togglePanelCommand));
    return std::make_unique<FirstWorkingRegistrar>(std::move(candidates));
}

std::unique_ptr<HotKeyRegistrar> chooseRegistrar(const QDBusConnection &bus) {
    const auto variable = [](const char *name) { return qEnvironmentVariable(name).toStdString(); };
    return chooseRegistrar(hotKeySurroundings(variable, bus));
}

} // namespace tarnvale
