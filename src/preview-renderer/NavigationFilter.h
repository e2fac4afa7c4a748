#pragma once

#include <QWebEngineUrlRequestInterceptor>

namespace tarnvale {

/// Stops every load of a page or a frame that leads off this computer, before its host is looked up. It is
/// the second lock behind the page's own, at another place of the browser; redirects are shown to the page
/// alone.
class NavigationFilter : public QWebEngineUrlRequestInterceptor {
public:
    using QWebEngineUrlRequestInterceptor::QWebEngineUrlRequestInterceptor;

    void interceptRequest(QWebEngineUrlRequestInfo &request) override;
};

} // namespace tarnvale
