#pragma once

#include "updates/UpdateSource.h"

#include <QPromise>

#include <optional>
#include <string>
#include <vector>

namespace tarnvale {

/// A source whose answers the test gives, when it likes.
class FakeUpdateSource : public UpdateSource {
public:
    /// Downloads go to `folder`.
    explicit FakeUpdateSource(QString folder) : m_folder(std::move(folder)) {}

    int reads = 0;
    std::vector<UpdateItem> downloads;
    std::function<void(std::int64_t)> progress;

    [[nodiscard]] QFuture<Feed> readFeed() override;
    [[nodiscard]] QFuture<Download> download(const UpdateItem &item,
                                             std::function<void(std::int64_t)> onProgress) override;
    void cancel() override;

    [[nodiscard]] bool isAsked() const { return m_feed || m_download; }
    void answerFeed(const std::string &feed);
    void failFeed(UpdateFailure::Kind kind);
    /// The file has come, with this content.
    void answerDownload(const std::string &content);
    void failDownload(UpdateFailure failure);

private:
    QString m_folder;
    std::optional<QPromise<Feed>> m_feed;
    std::optional<QPromise<Download>> m_download;
};

} // namespace tarnvale
