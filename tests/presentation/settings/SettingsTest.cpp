#include "presentation/settings/SettingsTest.h"

#include <QCoreApplication>

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

std::vector<std::string> shownTexts(QQuickItem *root) {
    std::vector<std::string> texts;
    for (const QString &text : visibleTexts(root))
        texts.push_back(text.toStdString());
    return texts;
}

} // namespace tarnvale
