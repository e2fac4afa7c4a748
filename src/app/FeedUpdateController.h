#pragma once

#include "app/Updater.h"
#include "presentation/update/UpdateWindow.h"
#include "updates/HttpsUpdateSource.h"
#include "updates/UpdateChecker.h"

#include <memory>
#include <optional>

namespace tarnvale {

/// Updates from the distributor's feed, in a window of their own. What it finds by itself it shows when it
/// has found it; when it finds nothing, or fails, it stays silent. Main thread.
class FeedUpdateController : public UpdateController {
public:
    FeedUpdateController(const BundleInformation &bundle, const Platform &platform, QQmlEngine &engine,
                         HttpsUpdateSource::Setup setup);
    FeedUpdateController(const FeedUpdateController &) = delete;
    FeedUpdateController &operator=(const FeedUpdateController &) = delete;
    ~FeedUpdateController() override;

    void checkForUpdates() override;
    [[nodiscard]] bool automaticallyChecksForUpdates() const override;
    bool setAutomaticallyChecksForUpdates(bool isOn) override;
    [[nodiscard]] std::optional<Instant> lastUpdateCheckDate() const override;

    [[nodiscard]] UpdateChecker &checker() { return m_checker; }
    [[nodiscard]] UpdateWindow &window() { return m_window; }

private:
    HttpsUpdateSource m_source;
    UpdateChecker m_checker;
    UpdateWindow m_window;
};

/// The feed that `bundle` names, and the user's folder for downloads.
[[nodiscard]] HttpsUpdateSource::Setup feedSetup(const BundleInformation &bundle);

/// One for `feedSetup(bundle)`, which looks by itself from now on.
[[nodiscard]] std::unique_ptr<UpdateController>
makeFeedUpdateController(const BundleInformation &bundle, const Platform &platform, QQmlEngine &engine);

} // namespace tarnvale
