#include "presentation/shared/screenItems.h"

#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>

namespace tarnvale {

namespace {

void collect(QQuickItem *item, std::vector<QQuickItem *> &items) {
    if (!item->isVisible())
        return;
    items.push_back(item);
    const auto children = item->childItems();
    for (QQuickItem *child : children)
        collect(child, items);
}

bool isOfType(const QQuickItem &item, const char *type) {
    const QByteArray whole(item.metaObject()->className());
    const QByteArray name = whole.mid(whole.lastIndexOf(':') + 1);
    return name == type || name.startsWith(QByteArray(type) + "_QML");
}

} // namespace

std::vector<QQuickItem *> visibleItems(QQuickItem *root) {
    std::vector<QQuickItem *> items;
    if (root != nullptr)
        collect(root, items);
    return items;
}

std::vector<QQuickItem *> itemsOfType(QQuickItem *root, const char *type) {
    std::vector<QQuickItem *> items = visibleItems(root);
    std::erase_if(items, [type](const QQuickItem *item) { return !isOfType(*item, type); });
    return items;
}

QQuickItem *findItem(QQuickItem *root, const char *type, const QString &value, const char *property) {
    for (QQuickItem *item : itemsOfType(root, type))
        if (value.isNull() || item->property(property).toString() == value)
            return item;
    return nullptr;
}

QStringList visibleTexts(QQuickItem *root) {
    QStringList texts;
    for (const QQuickItem *item : visibleItems(root))
        if (item->inherits("QQuickText") && !item->property("text").toString().isEmpty())
            texts.append(item->property("text").toString());
    return texts;
}

QRectF frameOf(const QQuickItem &item) {
    return item.mapRectToScene(QRectF(0, 0, item.width(), item.height()));
}

QPoint middleOf(const QQuickItem &item) {
    return frameOf(item).center().toPoint();
}

void clickOn(QQuickWindow &window, const QQuickItem &item, Qt::MouseButton button) {
    QTest::mouseClick(&window, button, {}, middleOf(item));
}

} // namespace tarnvale
