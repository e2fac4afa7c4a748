#pragma once

#include "presentation/shared/Screen.h"
#include "presentation/update/UpdateWindow.h"
#include "support/FakePlatform.h"
#include "support/TemporaryFolder.h"
#include "updates/FakeUpdateSource.h"
#include "updates/FeedText.h"
#include "updates/TestKey.h"
#include "updates/UpdateChecker.h"

#include <QQmlEngine>

#include <memory>
#include <string>
#include <vector>

namespace tarnvale {

/// The real window of updates over a source whose answers the test gives, without motion.
class UpdateScene final : public Screen {
public:
    explicit UpdateScene(bool isDark = false);
    UpdateScene(const UpdateScene &) = delete;
    UpdateScene &operator=(const UpdateScene &) = delete;
    ~UpdateScene() override;

    /// What the feed offers; its file is `content`, signed as it should be.
    [[nodiscard]] FeedItemText item() const;
    /// Opens the window with a check under way.
    void check();
    void answer(const FeedItemText &offered);
    void deliver(const std::string &bytes);

    /// The titles of the buttons that can be seen, from the left.
    [[nodiscard]] std::vector<std::string> buttons() const;
    /// That of the part that has the keyboard.
    [[nodiscard]] std::string focusedTitle() const;
    /// Clicks the button of that title.
    void click(const char *title);

    FakePlatform platform;
    TemporaryFolder folder;
    TestKey key;
    std::string content = std::string(2'000'000, 'u');
    FakeUpdateSource source{QString::fromStdString(folder.path())};
    QQmlEngine engine;
    std::unique_ptr<UpdateChecker> checker;
    std::unique_ptr<UpdateWindow> window;

private:
    [[nodiscard]] QQuickWindow *shownWindow() const override { return window->window(); }
};

} // namespace tarnvale
