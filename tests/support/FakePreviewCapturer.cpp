#include "support/FakePreviewCapturer.h"

#include <utility>

namespace tarnvale {

QFuture<std::optional<QByteArray>> FakePreviewCapturer::capture(std::int64_t port) {
    asked.push_back(port);
    auto promise = std::make_shared<QPromise<std::optional<QByteArray>>>();
    promise->start();
    m_waiting.push_back({port, promise});
    if (!isSlow) {
        const auto picture = pictures.find(port);
        const auto drawn = draw && picture == pictures.end() ? draw(port) : std::nullopt;
        answer(port, picture == pictures.end() ? drawn : std::optional(picture->second));
    }
    return promise->future();
}

void FakePreviewCapturer::answer(std::int64_t port, const std::optional<QByteArray> &picture) {
    for (const Waiting &waiting : std::exchange(m_waiting, {})) {
        if (waiting.port != port) {
            m_waiting.push_back(waiting);
            continue;
        }
        waiting.promise->addResult(picture);
        waiting.promise->finish();
    }
}

void FakePreviewCapturer::answerAll() {
    while (!m_waiting.empty())
        answer(m_waiting.front().port, std::nullopt);
}

} // namespace tarnvale
