#pragma once

#include "platform/Clock.h"
#include "preview-renderer/NavigationFilter.h"
#include "preview-renderer/PageLoad.h"

#include <QByteArray>
#include <QCoroTask>
#include <QWebEngineProfile>
#include <QWebEngineView>

#include <cstdint>
#include <memory>

namespace tarnvale {

/// Loads pages in a hidden browser and takes their pictures, one at a time. Main thread.
class PagePainter : public QObject {
public:
    PagePainter();

    /// The picture of the front page of the server on `port`, as `PreviewCapturer` promises it; empty when
    /// there is none. The page is gone then.
    [[nodiscard]] QCoro::Task<QByteArray> paint(std::int64_t port);

    /// Whether the browser can draw at all.
    [[nodiscard]] QCoro::Task<bool> tryOut();

private:
    [[nodiscard]] QFuture<bool> load(const QUrl &url);
    [[nodiscard]] QByteArray snapshot();

    SystemClock m_clock;
    QWebEngineProfile m_profile; ///< without a name, it is off the record
    NavigationFilter m_filter;
    PageLoad m_load{m_clock};
    std::unique_ptr<QWebEngineView> m_view; ///< during a capture
    bool m_hasCrashed = false;              ///< the page's process has ended
};

} // namespace tarnvale
