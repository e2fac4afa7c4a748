#pragma once

#include "platform/linux/HelperPreviewCapturer.h"
#include "preview-renderer/PageServer.h"
#include "support/TemporaryFolder.h"

#include <QColor>
#include <QImage>

#include <gtest/gtest.h>

#include <memory>
#include <optional>

namespace tarnvale {

/// The helper program as the application runs it, in a home of its own, and a server with pages.
class PreviewTest : public testing::Test {
protected:
    PreviewTest();
    ~PreviewTest() override;
    void SetUp() override;

    /// The helper program; empty when it isn't part of this build.
    [[nodiscard]] static std::string helperPath();

    /// Starts anew, with `options` and the helper's path.
    void setOptions(HelperPreviewCapturer::Options options);

    /// The picture of a port's page; a null image when there is none.
    QImage capture(std::int64_t port);
    /// The same of the server's page "/".
    QImage capturePage(const QByteArray &html);

    /// How many processes the helper's group has.
    [[nodiscard]] static int groupSize(Pid helper);

    /// A page that is nothing but a colour, such as "#3366cc", and `more`.
    [[nodiscard]] static QByteArray coloured(const QByteArray &colour, const QByteArray &more = {});
    /// The colour in the middle of the picture's lower half, such as "#3366cc"; empty without a picture.
    [[nodiscard]] static std::string colourOf(const QImage &picture);

    TemporaryFolder home;
    PageServer server;
    std::unique_ptr<HelperPreviewCapturer> capturer;
};

/// The colours of the pages of tests.
inline constexpr const char *blue = "#3366cc";
inline constexpr const char *green = "#22aa44";

} // namespace tarnvale
