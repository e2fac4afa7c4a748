#pragma once

#include "app/BundleInformation.h"

#include <functional>
#include <memory>

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
};

using MakeUpdateController = std::function<std::unique_ptr<UpdateController>(const BundleInformation &)>;

/// The thin cover over a controller, which exists only in a build that may update itself.
class Updater {
public:
    explicit Updater(BundleInformation bundle, MakeUpdateController make = {})
        : m_bundle(std::move(bundle)), m_make(std::move(make)) {}

    /// Makes the controller, at the first call, where one can be made and the build may be updated.
    void start() {
        if (!m_controller && m_make && mayUpdate(m_bundle))
            m_controller = m_make(m_bundle);
    }

    [[nodiscard]] bool isAvailable() const { return m_controller != nullptr; }

    void checkForUpdates() {
        if (m_controller)
            m_controller->checkForUpdates();
    }

private:
    BundleInformation m_bundle;
    MakeUpdateController m_make;
    std::unique_ptr<UpdateController> m_controller;
};

} // namespace tarnvale
