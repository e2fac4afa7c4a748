#include "preview-renderer/HiddenPage.h"

#include "preview-renderer/isAllowedNavigation.h"

#include <QAuthenticator>
#include <QWebEngineCertificateError>
#include <QWebEngineClientCertificateSelection>
#include <QWebEngineFullScreenRequest>
#include <QWebEngineNewWindowRequest>
#include <QWebEngineQuotaRequest>
#include <QWebEngineRegisterProtocolHandlerRequest>
#include <QWebEngineSettings>

namespace tarnvale {

HiddenPage::HiddenPage(QWebEngineProfile *profile, QObject *parent) : QWebEnginePage(profile, parent) {
    using Setting = QWebEngineSettings::WebAttribute;
    for (const Setting unwanted :
         {Setting::JavascriptCanOpenWindows, Setting::JavascriptCanAccessClipboard,
          Setting::JavascriptCanPaste, Setting::LocalContentCanAccessRemoteUrls,
          Setting::LocalContentCanAccessFileUrls, Setting::PluginsEnabled, Setting::PdfViewerEnabled,
          Setting::ErrorPageEnabled, Setting::FullScreenSupportEnabled, Setting::ScreenCaptureEnabled,
          Setting::ShowScrollBars, Setting::DnsPrefetchEnabled, Setting::AllowRunningInsecureContent,
          Setting::AllowGeolocationOnInsecureOrigins, Setting::NavigateOnDropEnabled,
          Setting::AutoLoadIconsForPage})
        settings()->setAttribute(unwanted, false);
    settings()->setAttribute(Setting::PlaybackRequiresUserGesture, true);
    settings()->setAttribute(Setting::WebRTCPublicInterfacesOnly, true);
    settings()->setUnknownUrlSchemePolicy(QWebEngineSettings::DisallowUnknownUrlSchemes);
    setAudioMuted(true);
    refuseRequests();
}

void HiddenPage::refuseRequests() {
    connect(this, &QWebEnginePage::featurePermissionRequested, this,
            [this](const QUrl &origin, Feature feature) {
                setFeaturePermission(origin, feature, PermissionDeniedByUser);
            });
    connect(this, &QWebEnginePage::certificateError, this,
            [](QWebEngineCertificateError error) { error.rejectCertificate(); });
    connect(this, &QWebEnginePage::fullScreenRequested, this,
            [](QWebEngineFullScreenRequest request) { request.reject(); });
    connect(this, &QWebEnginePage::quotaRequested, this,
            [](QWebEngineQuotaRequest request) { request.reject(); });
    connect(this, &QWebEnginePage::registerProtocolHandlerRequested, this,
            [](QWebEngineRegisterProtocolHandlerRequest request) { request.reject(); });
    connect(this, &QWebEnginePage::selectClientCertificate, this,
            [](QWebEngineClientCertificateSelection selection) { selection.selectNone(); });
    // Left without a name, a log-in is refused.
    const auto refuseLogin = [](QAuthenticator *authenticator) { *authenticator = QAuthenticator(); };
    connect(this, &QWebEnginePage::authenticationRequired, this,
            [refuseLogin](const QUrl &, QAuthenticator *authenticator) { refuseLogin(authenticator); });
    connect(this, &QWebEnginePage::proxyAuthenticationRequired, this,
            [refuseLogin](const QUrl &, QAuthenticator *authenticator, const QString &) {
                refuseLogin(authenticator);
            });
}

bool HiddenPage::acceptNavigationRequest(const QUrl &url, NavigationType, bool) {
    return isAllowedNavigation(url);
}

QWebEnginePage *HiddenPage::createWindow(WebWindowType) {
    return nullptr;
}

QStringList HiddenPage::chooseFiles(FileSelectionMode, const QStringList &, const QStringList &) {
    return {};
}

void HiddenPage::javaScriptAlert(const QUrl &, const QString &) {}

bool HiddenPage::javaScriptConfirm(const QUrl &, const QString &) {
    return false;
}

bool HiddenPage::javaScriptPrompt(const QUrl &, const QString &, const QString &, QString *) {
    return false;
}

void HiddenPage::javaScriptConsoleMessage(JavaScriptConsoleMessageLevel, const QString &, int,
                                          const QString &) {}

} // namespace tarnvale
