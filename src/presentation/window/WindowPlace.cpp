#include "presentation/window/WindowPlace.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

namespace tarnvale {

namespace {

constexpr int largest = 100'000; // pixels

std::optional<int> numberIn(const QJsonObject &object, const char *name) {
    const QJsonValue value = object.value(QLatin1String(name));
    if (!value.isDouble() || !(value.toDouble() >= -largest && value.toDouble() <= largest))
        return std::nullopt;
    return static_cast<int>(value.toDouble());
}

/// Enough of the title is on a screen to be taken hold of.
bool canBeReached(const QRect &frame, const std::vector<QRect> &screens) {
    constexpr int graspable = 48; // pixels
    const QRect title(frame.topLeft(), QSize(frame.width(), graspable));
    return std::any_of(screens.begin(), screens.end(), [&](const QRect &screen) {
        const QRect seen = screen.intersected(title);
        return seen.width() >= graspable && seen.height() >= graspable / 2;
    });
}

} // namespace

std::string toJson(const WindowPlace &place) {
    return QJsonDocument(QJsonObject{{QStringLiteral("x"), place.frame.x()},
                                     {QStringLiteral("y"), place.frame.y()},
                                     {QStringLiteral("width"), place.frame.width()},
                                     {QStringLiteral("height"), place.frame.height()},
                                     {QStringLiteral("maximized"), place.isMaximized}})
        .toJson(QJsonDocument::Compact)
        .toStdString();
}

std::optional<WindowPlace> windowPlaceFromJson(const std::string &json) {
    const QJsonObject object = QJsonDocument::fromJson(QByteArray::fromStdString(json)).object();
    const auto x = numberIn(object, "x");
    const auto y = numberIn(object, "y");
    const auto width = numberIn(object, "width");
    const auto height = numberIn(object, "height");
    if (!x || !y || !width || !height || *width <= 0 || *height <= 0)
        return std::nullopt;
    return WindowPlace{QRect(*x, *y, *width, *height), object.value(QLatin1String("maximized")).toBool()};
}

QRect frameFor(const std::optional<WindowPlace> &stored, QSize preferred, QSize least,
               const std::vector<QRect> &screens) {
    const QSize wanted = (stored ? stored->frame.size() : preferred).expandedTo(least);
    if (screens.empty())
        return {stored ? stored->frame.topLeft() : QPoint(), wanted};
    if (stored && canBeReached(stored->frame, screens))
        return {stored->frame.topLeft(), wanted};
    const QRect &screen = screens.front();
    QRect frame(QPoint(), wanted.boundedTo(screen.size()));
    frame.moveCenter(screen.center());
    return frame;
}

} // namespace tarnvale
