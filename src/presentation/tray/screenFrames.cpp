#include "presentation/tray/screenFrames.h"

#include <QGuiApplication>
#include <QScreen>

namespace tarnvale {

namespace {

/// On X11 Qt scales a screen's size but leaves its origin; other platforms lay out the screens in logical
/// pixels, and a host that speaks of device pixels there scales the origin too.
QPoint nativeOriginOf(const QScreen &screen) {
    const QPoint origin = screen.geometry().topLeft();
    return QGuiApplication::platformName() == QStringLiteral("xcb") ? origin
                                                                    : origin * screen.devicePixelRatio();
}

} // namespace

std::vector<ScreenFrame> screenFrames() {
    std::vector<ScreenFrame> frames;
    const auto screens = QGuiApplication::screens(); // the primary one is the first
    for (const QScreen *screen : screens)
        frames.push_back({screen->geometry(), screen->availableGeometry(), screen->devicePixelRatio(),
                          nativeOriginOf(*screen)});
    return frames;
}

} // namespace tarnvale
