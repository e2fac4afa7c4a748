#include "presentation/design/registerDesign.h"

#include "presentation/design/IconProvider.h"

#include <QPointer>
#include <QQmlComponent>
#include <QQmlEngine>

#include <memory>

// Made by the build; Qt 6.4 has no header for it.
void qml_register_types_Tarnvale_Design(); // NOLINT(readability-identifier-naming)

namespace tarnvale {

namespace {

QPointer<QQmlEngine> &themeEngine() {
    static QPointer<QQmlEngine> engine;
    return engine;
}

} // namespace

void registerDesign(QQmlEngine &engine) {
    qml_register_types_Tarnvale_Design();
    engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
    engine.addImageProvider(QStringLiteral("icon"), new IconProvider);
    themeEngine() = &engine;
}

QObject *designTheme(QQmlEngine &engine) {
    QQmlComponent component(&engine);
    component.setData(
        "import QtQml\nimport Tarnvale.Design\nQtObject { readonly property QtObject theme: Theme }",
        QUrl(QStringLiteral("qrc:/theme")));
    const std::unique_ptr<QObject> holder(component.create());
    return holder ? holder->property("theme").value<QObject *>() : nullptr;
}

QColor themeColor(const char *name) {
    static QPointer<QObject> theme; // gone with its engine
    if (!theme && themeEngine())
        theme = designTheme(*themeEngine());
    const QColor color = theme ? theme->property(name).value<QColor>() : QColor();
    return color.isValid() ? color : QColor(Qt::black);
}

} // namespace tarnvale
