#include "preview-renderer/PreviewTest.h"

#include "support/ManualClock.h"

#include <filesystem>
#include <unistd.h>

namespace tarnvale {

PreviewTest::PreviewTest() {
    setenv("HOME", home.path().c_str(), 1);
    for (const char *name : {"XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_DATA_HOME", "XDG_DOWNLOAD_DIR"})
        unsetenv(name);
    if (geteuid() == 0)
        setenv("TARNVALE_PREVIEW_SANDBOX", "off", 1); // the browser's sandbox holds nobody who is root
    setOptions({});
}

PreviewTest::~PreviewTest() {
    if (const auto helper = capturer->helper()) {
        capturer.reset();
        EXPECT_TRUE(waitFor([&] { return groupSize(*helper) == 0; })) << "something was left behind";
    }
}

std::string PreviewTest::helperPath() {
#ifdef TARNVALE_PREVIEW
    return TARNVALE_PREVIEW;
#else
    return {};
#endif
}

void PreviewTest::SetUp() {
    if (helperPath().empty())
        GTEST_SKIP() << "the helper program isn't part of this build";
}

void PreviewTest::setOptions(HelperPreviewCapturer::Options options) {
    options.findHelper = helperPath;
    capturer = std::make_unique<HelperPreviewCapturer>(std::move(options));
}

QImage PreviewTest::capture(std::int64_t port) {
    using namespace std::chrono_literals;
    const QFuture<std::optional<QByteArray>> capture = capturer->capture(port);
    EXPECT_TRUE(waitFor([&] { return capture.isFinished(); }, 40s)) << "the capture never ended";
    if (!capture.isFinished() || !capture.result())
        return {};
    return QImage::fromData(*capture.result(), "PNG");
}

QImage PreviewTest::capturePage(const QByteArray &html) {
    server.setPage("/", html);
    return capture(server.port());
}

int PreviewTest::groupSize(Pid helper) {
    int count = 0;
    std::error_code error;
    for (const auto &entry : std::filesystem::directory_iterator("/proc", error)) {
        const int pid = std::atoi(entry.path().filename().c_str());
        count += pid > 0 && getpgid(pid) == helper ? 1 : 0;
    }
    return count;
}

QByteArray PreviewTest::coloured(const QByteArray &colour, const QByteArray &more) {
    return "<!doctype html><html><body style='margin:0;background:" + colour + "'>" + more + "</body></html>";
}

std::string PreviewTest::colourOf(const QImage &picture) {
    return picture.isNull() ? std::string()
                            : picture.pixelColor(picture.width() / 2, picture.height() * 3 / 4)
                                  .name(QColor::HexRgb)
                                  .toStdString();
}

} // namespace tarnvale
