#include "preview-renderer/PagePainter.h"

#include "platform/PreviewCapturer.h"
#include "preview-renderer/HiddenPage.h"

#include <QBuffer>
#include <QCoroFuture>
#include <QImage>
#include <QPixmap>
#include <QWebEngineDownloadRequest>
#include <QWebEngineLoadingInfo>

namespace tarnvale {

using namespace std::chrono_literals;

namespace {

constexpr auto settleTime = 1200ms; ///< in which scripts draw
constexpr QSize pageSize(1280, 800);

/// A server that says an error says it on a page.
bool isLoaded(const QWebEngineLoadingInfo &info) {
    return info.status() == QWebEngineLoadingInfo::LoadSucceededStatus ||
           info.errorDomain() == QWebEngineLoadingInfo::HttpStatusCodeDomain;
}

} // namespace

PagePainter::PagePainter() {
    m_profile.setHttpCacheType(QWebEngineProfile::NoCache);
    m_profile.setPersistentCookiesPolicy(QWebEngineProfile::NoPersistentCookies);
    // Even off the record, folders would be made for databases.
    m_profile.setPersistentStoragePath(QStringLiteral("/dev/null/nowhere"));
    m_profile.setCachePath(QStringLiteral("/dev/null/nowhere"));
    m_profile.setSpellCheckEnabled(false);
    m_profile.setUrlRequestInterceptor(&m_filter);
    m_profile.setNotificationPresenter([](const auto &) {});
    connect(&m_profile, &QWebEngineProfile::downloadRequested, this,
            [](QWebEngineDownloadRequest *download) { download->cancel(); });
}

QCoro::Task<QByteArray> PagePainter::paint(std::int64_t port) {
    const QUrl url(QStringLiteral("http://localhost:%1/").arg(port));
    const QFuture<bool> loading = load(url);
    const bool isLoaded = co_await loading;
    QByteArray picture;
    if (isLoaded) {
        const QFuture<void> settled = m_clock.sleep(settleTime);
        co_await settled;
        if (!m_hasCrashed)
            picture = snapshot();
    }
    m_view.reset();
    co_return picture;
}

QCoro::Task<bool> PagePainter::tryOut() {
    const QFuture<bool> loading = load(QUrl(QStringLiteral("about:blank")));
    const bool isLoaded = co_await loading;
    m_view.reset();
    co_return isLoaded;
}

QFuture<bool> PagePainter::load(const QUrl &url) {
    m_view = std::make_unique<QWebEngineView>();
    auto *const page = new HiddenPage(&m_profile, m_view.get());
    connect(page, &QWebEnginePage::loadingChanged, this, [this](const QWebEngineLoadingInfo &info) {
        if (info.status() != QWebEngineLoadingInfo::LoadStartedStatus)
            m_load.finish(isLoaded(info));
    });
    m_hasCrashed = false;
    connect(page, &QWebEnginePage::renderProcessTerminated, this, [this] {
        m_hasCrashed = true;
        m_load.finish(false);
    });
    // The address becomes the page's when its first bytes are here.
    connect(page, &QWebEnginePage::urlChanged, this, [this] { m_load.respond(); });
    m_view->setPage(page);
    m_view->resize(pageSize);
    m_view->setContextMenuPolicy(Qt::NoContextMenu);
    m_view->show();
    QFuture<bool> loading = m_load.begin();
    page->load(url);
    return loading;
}

QByteArray PagePainter::snapshot() {
    const QImage page = m_view->grab().toImage();
    if (page.isNull())
        return {};
    const QImage picture = page.scaledToWidth(PreviewCapturer::pictureWidth, Qt::SmoothTransformation);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    return picture.convertToFormat(QImage::Format_RGB32).save(&buffer, "PNG") ? bytes : QByteArray();
}

} // namespace tarnvale
