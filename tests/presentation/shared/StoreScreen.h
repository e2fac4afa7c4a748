#pragma once

#include "drive/DemoWorld.h"
#include "presentation/shared/Screen.h"
#include "store/PortStore.h"

#include <chrono>
#include <functional>
#include <memory>
#include <string>

namespace tarnvale {

/// A screen with a store on a made-up machine.
class StoreScreen : public Screen {
public:
    /// One scan more, and what follows from it.
    void scan();
    /// Lets the time of the made-up machine pass, in steps of 50 milliseconds.
    void pass(std::chrono::milliseconds time);

    DemoWorld world;
    std::unique_ptr<PortStore> store;

protected:
    /// A scene of `demoScenes()`.
    StoreScreen(const std::string &scene, const ScreenLook &look);

    /// Makes the store, once `prepare`, if there is one, has changed the scene. Nothing else works before.
    void start(const std::function<void(DemoWorld &)> &prepare = {});

    /// Until no scan is under way and nothing is left to be done in the background.
    void settleAll() final;
};

} // namespace tarnvale
