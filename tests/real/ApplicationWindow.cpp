#include "real/ApplicationWindow.h"

#include <utility>

namespace tarnvale {

namespace {

constexpr int toolbar = 60; // pixels, and a bit
constexpr int footer = 20;

} // namespace

void ApplicationWindow::SetUp() {
    ApplicationTest::SetUp();
    if (IsSkipped())
        return;
    ASSERT_TRUE(settings().setFlag("showWindowAtLaunch", true));
}

bool ApplicationWindow::startWithWindow(const std::vector<std::string> &variables) {
    application.reset(); // one at a time
    application = std::make_unique<RealApplication>(desktop, std::vector<std::string>(), variables);
    return application->says("registered") && desktop.isWindowOpen("Overview");
}

bool ApplicationWindow::goTo(const std::string &page) {
    return choose("list item", page) && desktop.isWindowOpen(page);
}

bool ApplicationWindow::sees(const std::string &role, const std::string &words) {
    return desktop.shows([&](const AccessibleTree &tree) { return tree.shown(role, words) != nullptr; });
}

AccessibleNode ApplicationWindow::frame() const {
    const AccessibleNode *const found = desktop.tree().window();
    return found == nullptr ? AccessibleNode() : *found;
}

/// How far to turn the wheel so that the middle of `node` comes into sight.
int ApplicationWindow::clicksTo(const AccessibleNode &node) const {
    constexpr int pixelsOfAClick = 60; // at least
    const int middle = node.y + node.height / 2;
    const int beyond = middle - (frame().y + frame().height - footer);
    const int above = middle - (frame().y + toolbar);
    if (beyond >= 0)
        return beyond / pixelsOfAClick + 1;
    return above < 0 ? above / pixelsOfAClick - 1 : 0;
}

bool ApplicationWindow::bringIntoSight(const std::string &role, const std::string &words) {
    constexpr int mostTurns = 30;
    for (int turns = 0; turns < mostTurns; ++turns) {
        const auto canBeReached = [&](const AccessibleTree &tree) {
            const AccessibleNode *const node = tree.present(role, words);
            return node != nullptr &&
                   (node->is("showing") || (tree.window() != nullptr && clicksTo(*node) != 0));
        };
        if (!desktop.shows(canBeReached))
            return false;
        const AccessibleNode node = *desktop.tree().present(role, words);
        const int clicks = frame().height > 0 ? clicksTo(node) : 0;
        if (clicks == 0)
            return true;
        desktop.scroll(node.x + node.width / 2, frame().y + frame().height / 2, clicks);
        int last = node.y;
        const auto rests = [&](const AccessibleTree &tree) {
            const AccessibleNode *const moved = tree.present(role, words);
            return moved != nullptr && std::exchange(last, moved->y) == moved->y;
        };
        if (!desktop.shows(rests))
            return false;
    }
    return false;
}

bool ApplicationWindow::choose(const std::string &role, const std::string &words) {
    if (!bringIntoSight(role, words))
        return false;
    desktop.click(*desktop.tree().present(role, words));
    return true;
}

} // namespace tarnvale
