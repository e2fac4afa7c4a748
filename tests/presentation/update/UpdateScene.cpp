#include "presentation/update/UpdateScene.h"

#include "platform/background.h"
#include "presentation/design/ToolTips.h"
#include "presentation/update/registerUpdate.h"

namespace tarnvale {

namespace {

void settleThreads() {
    settle();
    backgroundThreads().waitForDone();
    settle();
}

} // namespace

UpdateScene::UpdateScene(bool isDark) : Screen(ScreenLook{.isDark = isDark}) {
    registerUpdate(engine);
    checker = std::make_unique<UpdateChecker>(source, platform.platform(),
                                              UpdateChecker::Self{"1.0", key.publicKey()});
    window = std::make_unique<UpdateWindow>(engine, *checker, QStringLiteral("1.0"));
}

UpdateScene::~UpdateScene() {
    ToolTips::instance().hide();
    window.reset();
    checker.reset();
    settleThreads();
}

FeedItemText UpdateScene::item() const {
    return {.length = static_cast<std::int64_t>(content.size()), .signature = key.sign(content)};
}

void UpdateScene::check() {
    checker->check(CheckReason::user);
    window->show();
    draw();
}

void UpdateScene::answer(const FeedItemText &offered) {
    source.answerFeed(feedOf(offered.text()));
    settleThreads();
    draw();
}

void UpdateScene::deliver(const std::string &bytes) {
    source.answerDownload(bytes);
    settleThreads();
    draw();
}

std::vector<std::string> UpdateScene::buttons() const {
    std::vector<std::string> titles;
    for (const QQuickItem *button : findAll("PushButton"))
        titles.push_back(button->property("title").toString().toStdString());
    return titles;
}

std::string UpdateScene::focusedTitle() const {
    const QQuickItem *item = window->window() == nullptr ? nullptr : window->window()->activeFocusItem();
    return item == nullptr ? std::string("(none)") : item->property("title").toString().toStdString();
}

void UpdateScene::click(const char *title) {
    const QString wanted = QString::fromUtf8(title);
    const QQuickItem *const button = find("PushButton", wanted);
    Screen::click(button != nullptr ? button : find("LinkButton", wanted));
}

} // namespace tarnvale
