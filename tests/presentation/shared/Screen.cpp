#include "presentation/shared/Screen.h"

#include "presentation/design/Appearance.h"
#include "support/ManualClock.h"

#include <QTest>

#include <stdexcept>

namespace tarnvale {

Screen::Screen(const ScreenLook &look) {
    Appearance::instance().setOverride(look.isDark, look.reducesMotion);
}

Screen::~Screen() {
    Appearance::instance().setOverride(std::nullopt, std::nullopt);
}

QQuickItem *Screen::root() const {
    const QQuickWindow *const window = shownWindow();
    return window == nullptr ? nullptr : window->contentItem();
}

void Screen::settleAll() {
    settle();
}

QImage Screen::draw() {
    settleAll();
    if (shownWindow() == nullptr)
        return {};
    QImage picture = shownWindow()->grabWindow();
    if (picture.isNull())
        throw std::runtime_error("the window can't be drawn");
    settle();
    return picture;
}

void Screen::resize(int width, int height) {
    shownWindow()->resize(width, height);
    draw();
}

void Screen::click(const QQuickItem *item, Qt::MouseButton button) {
    if (item == nullptr)
        throw std::runtime_error("what is to be clicked isn't there");
    clickOn(*shownWindow(), *item, button);
    draw();
}

void Screen::hover(const QPoint &place) {
    for (const QPoint &next : {place - QPoint(3, 3), place}) { // a pointer that doesn't move hovers nothing
        QTest::mouseMove(shownWindow(), next);
        draw();
    }
}

void Screen::press(Qt::Key key, Qt::KeyboardModifiers modifiers) {
    QTest::keyClick(shownWindow(), key, modifiers);
    draw();
}

void Screen::type(const QString &text) {
    for (const QChar letter : text)
        QTest::keyClick(shownWindow(), letter.toLatin1());
    draw();
}

} // namespace tarnvale
