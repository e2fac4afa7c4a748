#pragma once

#include <QQmlEngine>
#include <QQuickItem>
#include <QString>
#include <QVariantMap>

#include <memory>

namespace tarnvale {

/// The root of a QML file of ours, "Tarnvale/Panel/MenuPanelContent.qml", with the properties that it
/// requires. `engine` and what they refer to outlive it. A file that can't be made is a fault in the program,
/// and ends it.
[[nodiscard]] std::unique_ptr<QQuickItem> makeContent(QQmlEngine &engine, const QString &file,
                                                      const QVariantMap &properties);

} // namespace tarnvale
