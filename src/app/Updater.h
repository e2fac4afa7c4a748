#pragma once

#include "app/BundleInformation.h"
#include "discovery/Instant.h"
#include "platform/Platform.h"

#include <functional>
#include <memory>
#include <optional>

class QQmlEngine;

namespace tarnvale {

/// What finds, shows and fetches newer versions.
class UpdateController {
public:
    UpdateController() = default;
    UpdateController(const UpdateController &) = delete;
    UpdateController &operator=(const UpdateController &) = delete;
    virtual ~UpdateController() = default;

    /// Looks now, and shows the user what came of it.
    virtual void checkForUpdates() = 0;

    /// Whether it also looks by itself, once a day.
    [[nodiscard]] virtual bool automaticallyChecksForUpdates() const = 0;
    /// Returns whether the choice could be stored; it is in force either way.
    virtual bool setAutomaticallyChecksForUpdates(bool isOn) = 0;

    /// When it last heard which version is the newest; nothing: never.
    [[nodiscard]] virtual std::optional<Instant> lastUpdateCheckDate() const = 0;
};

/// Makes one for a build, on a platform that outlives it. The engine, which knows the program's QML modules,
/// lives until the application is about to quit.
using MakeUpdateController = std::function<std::unique_ptr<UpdateController>(const BundleInformation &,
                                                                             const Platform &, QQmlEngine &)>;

/// The thin cover over a controller, which exists only in a build that may update itself.
class Updater {
public:
    explicit Updater(BundleInformation bundle, MakeUpdateController make = {})
        : m_bundle(std::move(bundle)), m_make(std::move(make)) {}

    /// Makes the controller, at the first call, where one can be made and the build may be updated.
    void start(const Platform &platform, QQmlEngine &engine) {
        if (!m_controller && m_make && mayUpdate(m_bundle))
            m_controller = m_make(m_bundle, platform, engine);
    }

    [[nodiscard]] bool isAvailable() const { return m_controller != nullptr; }

    void checkForUpdates() {
        if (m_controller)
            m_controller->checkForUpdates();
    }

    /// What the controller says; false and nothing without one.
    [[nodiscard]] bool automaticallyChecksForUpdates() const {
        return m_controller && m_controller->automaticallyChecksForUpdates();
    }
    bool setAutomaticallyChecksForUpdates(bool isOn) {
        return m_controller && m_controller->setAutomaticallyChecksForUpdates(isOn);
    }
    [[nodiscard]] std::optional<Instant> lastUpdateCheckDate() const {
        return m_controller ? m_controller->lastUpdateCheckDate() : std::nullopt;
    }

private:
    BundleInformation m_bundle;
    MakeUpdateController m_make;
    std::unique_ptr<UpdateController> m_controller;
};

} // namespace tarnvale
