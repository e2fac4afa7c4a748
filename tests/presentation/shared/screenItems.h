#pragma once

#include <QPoint>
#include <QRectF>
#include <QString>
#include <QStringList>

#include <vector>

class QQuickItem;
class QQuickWindow;

namespace tarnvale {

/// `root` and the parts below it that can be seen, whole or in part, in the order in which they lie in the
/// tree; nothing where `root` is null.
[[nodiscard]] std::vector<QQuickItem *> visibleItems(QQuickItem *root);

/// Those of them of that QML type.
[[nodiscard]] std::vector<QQuickItem *> itemsOfType(QQuickItem *root, const char *type);

/// The first visible part of that QML type of which `property` is `value`, which is any when null; null
/// without one.
[[nodiscard]] QQuickItem *findItem(QQuickItem *root, const char *type, const QString &value = {},
                                   const char *property = "title");

/// All texts that can be seen, but for empty ones.
[[nodiscard]] QStringList visibleTexts(QQuickItem *root);

/// In the window.
[[nodiscard]] QRectF frameOf(const QQuickItem &item);
[[nodiscard]] QPoint middleOf(const QQuickItem &item);

void clickOn(QQuickWindow &window, const QQuickItem &item, Qt::MouseButton button = Qt::LeftButton);

} // namespace tarnvale
