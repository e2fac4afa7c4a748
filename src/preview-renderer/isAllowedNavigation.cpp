#include "preview-renderer/isAllowedNavigation.h"

#include <QStringList>

namespace tarnvale {

bool isAllowedNavigation(const QUrl &url) {
    const QString scheme = url.scheme();
    if (scheme == QStringLiteral("about"))
        return true;
    if (scheme != QStringLiteral("http") && scheme != QStringLiteral("https"))
        return false; // a file may name a host, too
    static const QStringList local{QStringLiteral("localhost"), QStringLiteral("127.0.0.1"),
                                   QStringLiteral("::1"), QStringLiteral("[::1]")};
    const QString host = url.host();
    return local.contains(host) || host.endsWith(QStringLiteral(".test")) ||
           host.endsWith(QStringLiteral(".localhost"));
}

} // namespace tarnvale
