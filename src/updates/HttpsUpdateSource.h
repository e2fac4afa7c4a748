#pragma once

#include "updates/HttpsFetch.h"
#include "updates/UpdateSource.h"

#include <QSslConfiguration>
#include <QString>
#include <QUrl>

#include <chrono>
#include <memory>

namespace tarnvale {

/// The servers of a distributor, by HTTPS alone, with the certificates that the system trusts.
class HttpsUpdateSource : public UpdateSource {
public:
    struct Setup {
        QUrl feed;
        QString folder; ///< where downloads go
        QSslConfiguration tls = QSslConfiguration::defaultConfiguration();
        std::chrono::milliseconds silence{30'000};  ///< for how long nothing may come
        std::chrono::milliseconds feedTime{60'000}; ///< how long the feed may take
    };

    /// The folder that the user's desktop keeps for downloads.
    [[nodiscard]] static QString downloadFolder();

    explicit HttpsUpdateSource(Setup setup);
    HttpsUpdateSource(const HttpsUpdateSource &) = delete;
    HttpsUpdateSource &operator=(const HttpsUpdateSource &) = delete;
    ~HttpsUpdateSource() override;

    [[nodiscard]] QFuture<Feed> readFeed() override;
    [[nodiscard]] QFuture<Download> download(const UpdateItem &item,
                                             std::function<void(std::int64_t)> onProgress) override;
    void cancel() override;

private:
    void start(std::unique_ptr<HttpsFetch> fetch, const QUrl &url,
               std::function<void(const HttpsFetch::Outcome &)> whenEnded);

    Setup m_setup;
    std::unique_ptr<HttpsFetch> m_fetch; ///< what is under way
    std::weak_ptr<PartialFile> m_part;   ///< of the last download
};

} // namespace tarnvale
