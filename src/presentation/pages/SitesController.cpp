#include "presentation/pages/SitesController.h"

#include "platform/Desktop.h"
#include "presentation/plainText.h"

#include <QCoreApplication>

#include <algorithm>

namespace tarnvale {

QString SitesController::subtitle() const {
    const QString text = siteCount() == 1
                             ? QCoreApplication::translate("SitesView", "%1 Herd / Valet site on this Mac.")
                             : QCoreApplication::translate("SitesView", "%1 Herd / Valet sites on this Mac.");
    return text.arg(siteCount());
}

void SitesController::setSites(const std::vector<LocalSites::Site> &sites) {
    std::vector<SiteRow> rows;
    rows.reserve(sites.size());
    for (const LocalSites::Site &site : sites)
        rows.push_back({.url = QString::fromStdString(site.url),
                        .domain = plainText(site.domain),
                        .isSecured = site.url.starts_with("https:")});
    m_sites.setRows(std::move(rows));
    m_isReady = true;
    Q_EMIT sitesChanged();
}

void SitesController::open(const QString &url) {
    const auto &rows = m_sites.rows();
    if (std::any_of(rows.begin(), rows.end(), [&](const SiteRow &site) { return site.url == url; }))
        m_desktop.openUrl(url.toStdString());
}

const std::vector<ListRole<SiteRow>> &SiteRow::roles() {
    static const std::vector<ListRole<SiteRow>> all{
        {"siteUrl", [](const SiteRow &row) -> QVariant { return row.url; }},
        {"domain", [](const SiteRow &row) -> QVariant { return row.domain; }},
        {"isSecured", [](const SiteRow &row) -> QVariant { return row.isSecured; }},
    };
    return all;
}

} // namespace tarnvale
