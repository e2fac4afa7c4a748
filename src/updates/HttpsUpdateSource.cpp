#include "updates/HttpsUpdateSource.h"

#include "updates/parseAppcast.h"
#include "updates/safeFileName.h"

#include <QDir>
#include <QPromise>
#include <QStandardPaths>

#include <utility>

namespace tarnvale {

namespace {

/// A promise that every copy of a callback can keep.
template<typename Result> std::shared_ptr<QPromise<Result>> startedPromise() {
    auto promise = std::make_shared<QPromise<Result>>();
    promise->start();
    return promise;
}

template<typename Result> void keep(QPromise<Result> &promise, Result result) {
    promise.addResult(std::move(result));
    promise.finish();
}

} // namespace

QString HttpsUpdateSource::downloadFolder() {
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::DownloadLocation);
    return folder.isEmpty() ? QDir::homePath() : folder;
}

HttpsUpdateSource::HttpsUpdateSource(Setup setup) : m_setup(std::move(setup)) {}

HttpsUpdateSource::~HttpsUpdateSource() {
    cancel();
    if (const auto part = m_part.lock()) // who waits for it may never come to look at it
        part->discard();
}

void HttpsUpdateSource::cancel() {
    if (m_fetch)
        m_fetch->cancel();
}

void HttpsUpdateSource::start(std::unique_ptr<HttpsFetch> fetch, const QUrl &url,
                              std::function<void(const HttpsFetch::Outcome &)> whenEnded) {
    cancel();
    m_fetch = std::move(fetch);
    HttpsFetch *current = m_fetch.get();
    QObject::connect(current, &HttpsFetch::ended, current,
                     [this, current, whenEnded = std::move(whenEnded)](const HttpsFetch::Outcome &outcome) {
                         const auto act = whenEnded; // this closure goes with its sender
                         if (m_fetch.get() == current)
                             m_fetch.release()->deleteLater();
                         act(outcome);
                     });
    current->start(url);
}

QFuture<UpdateSource::Feed> HttpsUpdateSource::readFeed() {
    const auto promise = startedPromise<Feed>();
    const auto feed = std::make_shared<QByteArray>();
    auto fetch = std::make_unique<HttpsFetch>(
        m_setup.tls,
        HttpsFetch::Limits{.bytes = mostFeedBytes, .silence = m_setup.silence, .whole = m_setup.feedTime},
        [feed](const QByteArray &piece) -> HttpsFetch::Outcome {
            *feed += piece;
            return {};
        });
    start(std::move(fetch), m_setup.feed, [promise, feed](const HttpsFetch::Outcome &outcome) {
        keep<Feed>(*promise, outcome ? Feed(std::move(*feed)) : Feed(std::unexpected(outcome.error())));
    });
    return promise->future();
}

QFuture<UpdateSource::Download> HttpsUpdateSource::download(const UpdateItem &item,
                                                            std::function<void(std::int64_t)> onProgress) {
    const auto promise = startedPromise<Download>();
    const auto part = PartialFile::create(m_setup.folder, safeFileName(item.url), item.length);
    if (!part) {
        keep<Download>(*promise, std::unexpected(part.error()));
        return promise->future();
    }
    cancel();
    m_part = *part;
    auto fetch = std::make_unique<HttpsFetch>(
        m_setup.tls, HttpsFetch::Limits{.bytes = item.length, .silence = m_setup.silence},
        [file = m_part, onProgress = std::move(onProgress)](const QByteArray &piece) -> HttpsFetch::Outcome {
            const auto open = file.lock();
            auto written = open->write(piece);
            if (written)
                onProgress(open->size());
            return written;
        });
    start(std::move(fetch), QUrl::fromEncoded(QByteArray::fromStdString(item.url), QUrl::StrictMode),
          [promise, file = *part, length = item.length](const HttpsFetch::Outcome &outcome) {
              HttpsFetch::Outcome whole = outcome;
              if (whole && file->size() != length)
                  whole = std::unexpected(UpdateFailure{UpdateFailure::Kind::cutShort, {}});
              if (!whole)
                  file->discard();
              keep<Download>(*promise, whole ? Download(file) : Download(std::unexpected(whole.error())));
          });
    return promise->future();
}

} // namespace tarnvale
