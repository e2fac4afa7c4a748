#pragma once

#include <QQuickImageProvider>

namespace tarnvale {

/// Symbols and logos as pictures for QML: "image://symbol/<name>?stroke=<units>&color=<as QColor reads it>",
/// with as many pixels as are asked for. An unknown name gives an empty picture. QML keeps what it shows, and
/// a bounded number beyond that.
class SymbolProvider : public QQuickImageProvider {
public:
    SymbolProvider() : QQuickImageProvider(Image) {}

    QImage requestImage(const QString &id, QSize *size, const QSize &requestedSize) override;
};

/// Icons of applications by the desktop's icon theme: "image://icon/<name>". One that the theme doesn't have
/// is a single empty pixel, so that something else can be shown without a warning.
class IconProvider : public QQuickImageProvider {
public:
    IconProvider() : QQuickImageProvider(Pixmap) {}

    QPixmap requestPixmap(const QString &id, QSize *size, const QSize &requestedSize) override;
};

} // namespace tarnvale
