#include "presentation/window/PagePictures.h"

#include "platform/Clock.h"
#include "presentation/shared/relativeTime.h"
#include "probes/WebPreviews.h"
#include "store/PortStore.h"

namespace tarnvale {

PagePictures::PagePictures(PortStore &store, const Platform &platform)
    : m_previews(store.previews()), m_platform(platform), m_isEnabled(m_previews.isEnabled()) {
    connect(&m_previews, &WebPreviews::previewsChanged, this, &PagePictures::changed);
    connect(&m_previews, &WebPreviews::capturingChanged, this, &PagePictures::changed);
}

qint64 PagePictures::stamp(int port) const {
    const auto found = m_previews.previews().find(port);
    if (!m_isEnabled || found == m_previews.previews().end())
        return 0;
    const auto since = found->second.capturedAt.time_since_epoch();
    return std::max<qint64>(1, std::chrono::duration_cast<std::chrono::milliseconds>(since).count());
}

QImage PagePictures::picture(int port) const {
    const auto found = m_previews.previews().find(port);
    return found == m_previews.previews().end() ? QImage() : QImage::fromData(found->second.image);
}

QString PagePictures::caption(int port) const {
    const auto found = m_previews.previews().find(port);
    if (found != m_previews.previews().end())
        return tr("Captured %1").arg(relativeTime(found->second.capturedAt, m_platform.clock.now()));
    return m_previews.capturing() == port ? tr("Capturing preview…")
                                          : tr("Preview appears once the page responds");
}

void PagePictures::refresh(int port) {
    m_previews.refresh(port);
}

void PagePictures::update() {
    m_isEnabled = m_previews.isEnabled();
    Q_EMIT changed();
}

} // namespace tarnvale
