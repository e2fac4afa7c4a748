#pragma once

#include "platform/PreviewCapturer.h"
#include "platform/linux/PreviewHelper.h"
#include "platform/linux/previewHelperPath.h"

#include <QDeadlineTimer>
#include <QPromise>
#include <QTimer>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace tarnvale {

/// Has a helper program draw the pages, which is started at the first capture and ended after a time without
/// work. Whatever befalls the helper costs one picture. Where it isn't installed there are none, and where it
/// can't draw it is tried again rarely.
class HelperPreviewCapturer : public PreviewCapturer {
public:
    struct Options {
        std::function<std::string()> findHelper = previewHelperPath;   ///< its path; empty: there is none
        std::chrono::milliseconds patience = std::chrono::seconds(15); ///< with its start, and with one page
        std::chrono::milliseconds idleTime = std::chrono::minutes(1);
        std::chrono::milliseconds pause = std::chrono::minutes(10); ///< after one that never became ready
    };

    HelperPreviewCapturer() : HelperPreviewCapturer(Options()) {}
    explicit HelperPreviewCapturer(Options options);
    HelperPreviewCapturer(const HelperPreviewCapturer &) = delete;
    HelperPreviewCapturer &operator=(const HelperPreviewCapturer &) = delete;
    /// Ends the helper.
    ~HelperPreviewCapturer() override;

    [[nodiscard]] QFuture<std::optional<QByteArray>> capture(std::int64_t port) override;

    /// The helper that runs.
    [[nodiscard]] std::optional<Pid> helper() const;

private:
    [[nodiscard]] bool startHelper();
    void take(const QByteArray &reply);
    void loseHelper();
    void finish(const std::optional<QByteArray> &picture);

    Options m_options;
    std::unique_ptr<PreviewHelper> m_helper;
    bool m_isReady = false; ///< the helper has told so
    std::optional<QPromise<std::optional<QByteArray>>> m_capture;
    QTimer m_watchdog;
    QTimer m_idle;
    QDeadlineTimer m_notBefore; ///< no helper is started until then
};

} // namespace tarnvale
