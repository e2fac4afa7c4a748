#include "presentation/shared/StoreScreen.h"

#include "platform/background.h"

#include <stdexcept>

namespace tarnvale {

using namespace std::chrono_literals;

StoreScreen::StoreScreen(const std::string &scene, const ScreenLook &look) : Screen(look) {
    if (!setScene(world, scene))
        throw std::runtime_error("there is no scene of this name");
}

void StoreScreen::start(const std::function<void(DemoWorld &)> &prepare) {
    if (prepare)
        prepare(world);
    store = std::make_unique<PortStore>(world.platform.platform(),
                                        [this](std::int64_t port, const std::string &,
                                               std::chrono::milliseconds) { return world.probe(port); });
}

void StoreScreen::settleAll() {
    const auto isIdle = [this] { return !store->isScanning() && backgroundThreads().isIdle(); };
    do {
        settle();
        if (!waitFor(isIdle))
            throw std::runtime_error("something goes on for ever");
        settle();
    } while (!isIdle());
}

void StoreScreen::scan() {
    store->refresh();
    settleAll();
}

void StoreScreen::pass(std::chrono::milliseconds time) {
    constexpr auto step = 50ms;
    for (auto passed = 0ms; passed < time; passed += step) {
        settleAll();
        world.platform.pass(step);
    }
    settleAll();
}

} // namespace tarnvale
