#pragma once

#include "platform/Platform.h"
#include "presentation/shared/KeyedListModel.h"
#include "probes/LocalSites.h"

#include <QAbstractItemModel>
#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include <vector>

namespace tarnvale {

/// A site as a card.
struct SiteRow {
    QString url;
    QString domain;
    bool isSecured = false;

    [[nodiscard]] QString key() const { return url; }
    [[nodiscard]] static const std::vector<ListRole<SiteRow>> &roles();

    bool operator==(const SiteRow &) const = default;
};

/// The page of the local sites. Main thread.
class SitesController : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("belongs to the window")

    Q_PROPERTY(QAbstractItemModel *sites READ sites CONSTANT)
    Q_PROPERTY(int siteCount READ siteCount NOTIFY sitesChanged)
    Q_PROPERTY(QString subtitle READ subtitle NOTIFY sitesChanged)
    Q_PROPERTY(bool isReady READ isReady NOTIFY sitesChanged)

public:
    /// What `platform` holds outlives this object.
    explicit SitesController(const Platform &platform) : m_desktop(platform.desktop) {}

    [[nodiscard]] QAbstractItemModel *sites() { return &m_sites; }
    [[nodiscard]] int siteCount() const { return m_sites.rowCount(); }
    [[nodiscard]] QString subtitle() const;
    /// The sites have been looked for.
    [[nodiscard]] bool isReady() const { return m_isReady; }

    void setSites(const std::vector<LocalSites::Site> &sites);
    /// The page works nothing out, shown or not.
    void setShown(bool /*isShown*/) {}

    /// Opens the site of this address in the browser.
    Q_INVOKABLE void open(const QString &url);

Q_SIGNALS:
    void sitesChanged();

private:
    Desktop &m_desktop;
    KeyedListModel<SiteRow> m_sites;
    bool m_isReady = false;
};

} // namespace tarnvale
