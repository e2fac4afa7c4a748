#pragma once

#include "presentation/shared/QmlWarnings.h"
#include "presentation/shared/screenItems.h"

#include <QImage>
#include <QPoint>
#include <QQuickItem>
#include <QQuickWindow>
#include <QString>
#include <QStringList>

#include <string>
#include <vector>

namespace tarnvale {

/// How a screen looks.
struct ScreenLook {
    bool isDark = false;
    bool reducesMotion = true;
};

/// A real window over a made-up world, worked as its user does, and every warning that comes of it. One at a
/// time lives.
class Screen {
public:
    Screen(const Screen &) = delete;
    Screen &operator=(const Screen &) = delete;
    virtual ~Screen();

    /// Lets the window lay out and draw what it shows. What comes back is null when no window is open.
    QImage draw();
    void resize(int width, int height);

    /// See screenItems.h.
    [[nodiscard]] std::vector<QQuickItem *> visibleItems() const { return tarnvale::visibleItems(root()); }
    [[nodiscard]] std::vector<QQuickItem *> findAll(const char *type) const {
        return itemsOfType(root(), type);
    }
    [[nodiscard]] QQuickItem *find(const char *type, const QString &value = {},
                                   const char *property = "title") const {
        return findItem(root(), type, value, property);
    }
    [[nodiscard]] QStringList texts() const { return visibleTexts(root()); }
    [[nodiscard]] bool says(const QString &text) const { return texts().contains(text); }

    /// Each draws what comes of it. An item that is null throws.
    void click(const QQuickItem *item, Qt::MouseButton button = Qt::LeftButton);
    void hover(const QPoint &place);
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {});
    void type(const QString &text);

    /// What went wrong so far, one a line; empty when all is well.
    [[nodiscard]] std::string warnings() const { return m_warnings.text(); }

protected:
    explicit Screen(const ScreenLook &look);

    /// Null while none is open.
    [[nodiscard]] virtual QQuickWindow *shownWindow() const = 0;
    /// Lets everything happen that a picture of the window waits for.
    virtual void settleAll();

private:
    [[nodiscard]] QQuickItem *root() const;

    QmlWarnings m_warnings;
};

} // namespace tarnvale
