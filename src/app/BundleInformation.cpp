#include "app/BundleInformation.h"

#include <QString>
#include <QUrl>

namespace tarnvale {

namespace {

std::string withoutBlanks(const std::string &text) {
    const std::size_t first = text.find_first_not_of(" \t");
    return first == text.npos ? std::string() : text.substr(first, text.find_last_not_of(" \t") + 1 - first);
}

} // namespace

const BundleInformation &bundleInformation() {
    static const BundleInformation information{TARNVALE_VERSION, TARNVALE_BUILD, TARNVALE_FEED_URL,
                                               TARNVALE_PUBLIC_ED_KEY};
    return information;
}

bool mayUpdate(const BundleInformation &bundle) {
    const std::string address = withoutBlanks(bundle.feedUrl);
    const QUrl url(QString::fromStdString(address), QUrl::StrictMode);
    return url.isValid() && address.starts_with("https:") && !withoutBlanks(bundle.publicKey).empty();
}

} // namespace tarnvale
