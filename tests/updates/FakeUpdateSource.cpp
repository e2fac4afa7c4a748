#include "updates/FakeUpdateSource.h"

#include <utility>

namespace tarnvale {

namespace {

template<typename Result> void keep(std::optional<QPromise<Result>> &promise, Result result) {
    if (!promise)
        return;
    QPromise<Result> kept = std::move(*promise);
    promise.reset();
    kept.addResult(std::move(result));
    kept.finish();
}

template<typename Result> QFuture<Result> begin(std::optional<QPromise<Result>> &promise) {
    promise.emplace();
    promise->start();
    return promise->future();
}

} // namespace

QFuture<UpdateSource::Feed> FakeUpdateSource::readFeed() {
    ++reads;
    return begin(m_feed);
}

QFuture<UpdateSource::Download> FakeUpdateSource::download(const UpdateItem &item,
                                                           std::function<void(std::int64_t)> onProgress) {
    downloads.push_back(item);
    progress = std::move(onProgress);
    return begin(m_download);
}

void FakeUpdateSource::cancel() {
    failFeed(UpdateFailure::Kind::cancelled);
    failDownload({UpdateFailure::Kind::cancelled, {}});
}

void FakeUpdateSource::answerFeed(const std::string &feed) {
    keep(m_feed, Feed(QByteArray::fromStdString(feed)));
}

void FakeUpdateSource::failFeed(UpdateFailure::Kind kind) {
    keep(m_feed, Feed(std::unexpected(UpdateFailure{kind, {}})));
}

void FakeUpdateSource::answerDownload(const std::string &content) {
    auto part = PartialFile::create(m_folder, QStringLiteral("update.deb"),
                                    static_cast<std::int64_t>(content.size()));
    if (part)
        (void)(*part)->write(QByteArray::fromStdString(content));
    keep(m_download, Download(std::move(part)));
}

void FakeUpdateSource::failDownload(UpdateFailure failure) {
    keep(m_download, Download(std::unexpected(std::move(failure))));
}

} // namespace tarnvale
