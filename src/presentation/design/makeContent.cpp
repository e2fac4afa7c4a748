#include "presentation/design/makeContent.h"

#include <QQmlComponent>

namespace tarnvale {

std::unique_ptr<QQuickItem> makeContent(QQmlEngine &engine, const QString &file,
                                        const QVariantMap &properties) {
    QQmlComponent component(&engine, QUrl(QStringLiteral("qrc:/qt/qml/") + file));
    std::unique_ptr<QObject> object;
    if (!component.isError()) // it would crash
        object.reset(component.createWithInitialProperties(properties));
    if (!object)
        qFatal("%s can't be shown: %s", qPrintable(file), qPrintable(component.errorString()));
    return std::unique_ptr<QQuickItem>(qobject_cast<QQuickItem *>(object.release()));
}

} // namespace tarnvale
