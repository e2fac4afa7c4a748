#include "presentation/settings/SettingsTest.h"

#include <QQuickWindow>
#include <QTest>

namespace tarnvale {

void SettingsTest::SetUp() {
    start();
    auto made = std::make_unique<FakeRegistrar>();
    registrar = made.get();
    hotKey = std::make_unique<GlobalHotKey>(world.settings, std::move(made));
    hotKey->setUp();
    quiesce();
}

SettingsActions SettingsTest::actions() {
    return {.version = QStringLiteral("2.1"),
            .build = QStringLiteral("57"),
            .copyInstallCommand = [this] { done.emplace_back("copy"); },
            .updates = std::nullopt};
}

UpdateChoices SettingsTest::updates() {
    return {.automaticallyChecks = [this] { return checksForUpdates; },
            .setAutomaticallyChecks = [this](bool isWanted) { checksForUpdates = isWanted; },
            .checkNow = [this] { done.emplace_back("check"); },
            .lastCheck = [this] { return lastCheck; }};
}

void SettingsTest::press(QObject &window, const NativeKey &key, Qt::KeyboardModifiers modifiers) {
    for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
        QKeyEvent event(type, key.key, modifiers, key.keycode, key.keysym, 0);
        QCoreApplication::sendEvent(&window, &event);
    }
    quiesce();
}

std::vector<QQuickItem *> visibleParts(QQuickItem *root) {
    std::vector<QQuickItem *> parts;
    if (root == nullptr || !root->isVisible())
        return parts;
    parts.push_back(root);
    const auto children = root->childItems();
    for (QQuickItem *child : children)
        for (QQuickItem *each : visibleParts(child))
            parts.push_back(each);
    return parts;
}

QQuickItem *part(QQuickItem *root, const char *type, const QString &title) {
    for (QQuickItem *item : visibleParts(root)) {
        const QByteArray name(item->metaObject()->className());
        const bool isOfType = name == type || name.startsWith(QByteArray(type) + "_QML");
        if (isOfType && (title.isNull() || item->property("title").toString() == title))
            return item;
    }
    return nullptr;
}

std::vector<std::string> shownTexts(QQuickItem *root) {
    std::vector<std::string> texts;
    for (const QQuickItem *item : visibleParts(root))
        if (item->inherits("QQuickText") && !item->property("text").toString().isEmpty())
            texts.push_back(item->property("text").toString().toStdString());
    return texts;
}

void clickOn(QQuickWindow &window, const QQuickItem &item) {
    QTest::mouseClick(&window, Qt::LeftButton, {},
                      item.mapToScene(QPointF(item.width() / 2, item.height() / 2)).toPoint());
}

} // namespace tarnvale
