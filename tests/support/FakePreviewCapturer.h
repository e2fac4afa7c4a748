#pragma once

#include "platform/PreviewCapturer.h"

#include <QPromise>

#include <functional>
#include <map>
#include <memory>
#include <vector>

namespace tarnvale {

/// Takes the pictures that a test has written down.
class FakePreviewCapturer : public PreviewCapturer {
public:
    FakePreviewCapturer() = default;
    FakePreviewCapturer(const FakePreviewCapturer &) = delete;
    FakePreviewCapturer &operator=(const FakePreviewCapturer &) = delete;
    ~FakePreviewCapturer() override { answerAll(); }

    std::map<std::int64_t, QByteArray> pictures; ///< by port
    /// Makes those that aren't written down; the others give none.
    std::function<std::optional<QByteArray>(std::int64_t port)> draw;
    bool isSlow = false;             ///< a capture ends only when the test answers it
    std::vector<std::int64_t> asked; ///< the ports, in order

    [[nodiscard]] QFuture<std::optional<QByteArray>> capture(std::int64_t port) override;

    /// Ends the captures of `port` that wait.
    void answer(std::int64_t port, const std::optional<QByteArray> &picture);
    /// Ends all captures that wait, without a picture.
    void answerAll();

private:
    struct Waiting {
        std::int64_t port = 0;
        std::shared_ptr<QPromise<std::optional<QByteArray>>> promise;
    };
    std::vector<Waiting> m_waiting;
};

} // namespace tarnvale
