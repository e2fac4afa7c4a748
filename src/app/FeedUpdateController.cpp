#include "app/FeedUpdateController.h"

#include "presentation/update/registerUpdate.h"

namespace tarnvale {

namespace {

/// A feed counts builds where the distributor does.
UpdateChecker::Self selfOf(const BundleInformation &bundle) {
    return {.version = bundle.build.empty() ? bundle.version : bundle.build, .publicKey = bundle.publicKey};
}

} // namespace

FeedUpdateController::FeedUpdateController(const BundleInformation &bundle, const Platform &platform,
                                           QQmlEngine &engine, HttpsUpdateSource::Setup setup)
    : m_source(std::move(setup)),
      m_checker(m_source, platform, selfOf(bundle)),
      m_window(engine, m_checker, QString::fromStdString(bundle.version)) {
    registerUpdate(engine);
    QObject::connect(&m_checker, &UpdateChecker::foundBySchedule, &m_window, &UpdateWindow::show);
    m_checker.start();
}

FeedUpdateController::~FeedUpdateController() = default;

void FeedUpdateController::checkForUpdates() {
    m_checker.check(CheckReason::user);
    m_window.show();
}

bool FeedUpdateController::automaticallyChecksForUpdates() const {
    return m_checker.automaticallyChecks();
}

bool FeedUpdateController::setAutomaticallyChecksForUpdates(bool isOn) {
    return m_checker.setAutomaticallyChecks(isOn);
}

std::optional<Instant> FeedUpdateController::lastUpdateCheckDate() const {
    return m_checker.lastCheck();
}

HttpsUpdateSource::Setup feedSetup(const BundleInformation &bundle) {
    return {.feed = QUrl(QString::fromStdString(bundle.feedUrl).trimmed(), QUrl::StrictMode),
            .folder = HttpsUpdateSource::downloadFolder()};
}

std::unique_ptr<UpdateController> makeFeedUpdateController(const BundleInformation &bundle,
                                                           const Platform &platform, QQmlEngine &engine) {
    return std::make_unique<FeedUpdateController>(bundle, platform, engine, feedSetup(bundle));
}

} // namespace tarnvale
