#pragma once

#include <QQuickImageProvider>

namespace tarnvale {

/// Icons of applications by the desktop's icon theme: "image://icon/<name>". One that the theme doesn't have
/// is a single empty pixel, so that something else can be shown without a warning.
class IconProvider : public QQuickImageProvider {
public:
    IconProvider() : QQuickImageProvider(Pixmap) {}

    QPixmap requestPixmap(const QString &id, QSize *size, const QSize &requestedSize) override;
};

} // namespace tarnvale
