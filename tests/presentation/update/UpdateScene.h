#pragma once

#include "presentation/update/UpdateWindow.h"
#include "support/FakePlatform.h"
#include "support/TemporaryFolder.h"
#include "updates/FakeUpdateSource.h"
#include "updates/FeedText.h"
#include "updates/TestKey.h"
#include "updates/UpdateChecker.h"

#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QStringList>

#include <memory>
#include <string>
#include <vector>

namespace tarnvale {

/// The real window of updates over a source whose answers the test gives, and every warning that comes of it.
class UpdateScene {
public:
    explicit UpdateScene(bool isDark = false);
    UpdateScene(const UpdateScene &) = delete;
    UpdateScene &operator=(const UpdateScene &) = delete;
    ~UpdateScene();

    /// What the feed offers; its file is `content`, signed as it should be.
    [[nodiscard]] FeedItemText item() const;
    /// Opens the window with a check under way.
    void check();
    void answer(const FeedItemText &offered);
    void deliver(const std::string &bytes);
    /// Lets the window lay out and draw what it shows.
    QImage draw();

    /// The visible parts of that QML type.
    [[nodiscard]] std::vector<QQuickItem *> findAll(const char *type) const;
    /// The titles of the buttons that can be seen, from the left.
    [[nodiscard]] std::vector<std::string> buttons() const;
    /// All visible texts.
    [[nodiscard]] QStringList texts() const;
    /// That of the part that has the keyboard.
    [[nodiscard]] std::string focusedTitle() const;
    void click(const char *title);
    void press(Qt::Key code, Qt::KeyboardModifiers modifiers = {});

    [[nodiscard]] std::string warnings() const { return m_warnings.join(QLatin1Char('\n')).toStdString(); }

    FakePlatform platform;
    TemporaryFolder folder;
    TestKey key;
    std::string content = std::string(2'000'000, 'u');
    FakeUpdateSource source{QString::fromStdString(folder.path())};
    QQmlEngine engine;
    std::unique_ptr<UpdateChecker> checker;
    std::unique_ptr<UpdateWindow> window;

private:
    QStringList m_warnings;
    QtMessageHandler m_earlier = nullptr;
};

} // namespace tarnvale
