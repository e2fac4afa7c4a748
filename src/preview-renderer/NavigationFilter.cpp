#include "preview-renderer/NavigationFilter.h"

#include "preview-renderer/isAllowedNavigation.h"

#include <algorithm>
#include <array>

namespace tarnvale {

void NavigationFilter::interceptRequest(QWebEngineUrlRequestInfo &request) {
    using Info = QWebEngineUrlRequestInfo;
    static constexpr std::array pages{Info::ResourceTypeMainFrame,
                                      Info::ResourceTypeSubFrame,
                                      Info::ResourceTypeObject,
                                      Info::ResourceTypePluginResource,
                                      Info::ResourceTypeNavigationPreloadMainFrame,
                                      Info::ResourceTypeNavigationPreloadSubFrame};
    const bool isPage = std::find(pages.begin(), pages.end(), request.resourceType()) != pages.end();
    if (isPage && !isAllowedNavigation(request.requestUrl()))
        request.block(true);
}

} // namespace tarnvale
