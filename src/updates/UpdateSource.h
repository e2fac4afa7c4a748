#pragma once

#include "updates/PartialFile.h"
#include "updates/UpdateFailure.h"
#include "updates/UpdateItem.h"

#include <QByteArray>
#include <QFuture>

#include <cstdint>
#include <expected>
#include <functional>
#include <memory>

namespace tarnvale {

/// Where the feed and the files come from, one at a time. Main thread. A future always comes to have a
/// result, at the latest when the source goes away.
class UpdateSource {
public:
    using Feed = std::expected<QByteArray, UpdateFailure>;
    using Download = std::expected<std::shared_ptr<PartialFile>, UpdateFailure>;

    UpdateSource() = default;
    UpdateSource(const UpdateSource &) = delete;
    UpdateSource &operator=(const UpdateSource &) = delete;
    virtual ~UpdateSource() = default;

    /// The feed as it is, of at most `mostFeedBytes`.
    [[nodiscard]] virtual QFuture<Feed> readFeed() = 0;

    /// The file of `item`: as many bytes as it announces, of which nobody knows yet who wrote them.
    /// `onProgress` is told how many have come.
    [[nodiscard]] virtual QFuture<Download> download(const UpdateItem &item,
                                                     std::function<void(std::int64_t)> onProgress) = 0;

    /// Ends what is under way, as `cancelled`.
    virtual void cancel() = 0;
};

} // namespace tarnvale
