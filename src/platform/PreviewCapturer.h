#pragma once

#include <QByteArray>
#include <QFuture>

#include <cstdint>
#include <optional>

namespace tarnvale {

/// Takes pictures of web pages. Main thread.
class PreviewCapturer {
public:
    /// How wide a picture is, in pixels; its height is that of a page of 1280 by 800 then.
    static constexpr int pictureWidth = 640;

    PreviewCapturer() = default;
    PreviewCapturer(const PreviewCapturer &) = delete;
    PreviewCapturer &operator=(const PreviewCapturer &) = delete;
    virtual ~PreviewCapturer() = default;

    /// Loads the front page of the server on a port of this computer, lets it draw, and takes its picture: an
    /// encoded image, `pictureWidth` wide. Nothing when the page fails, takes too long or leads to another
    /// computer, and when the system has no means to draw pages.
    ///
    /// One capture at a time. It ends by itself, with a result, on the main thread; at the latest when this
    /// object goes.
    [[nodiscard]] virtual QFuture<std::optional<QByteArray>> capture(std::int64_t port) = 0;
};

} // namespace tarnvale
