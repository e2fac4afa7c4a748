#pragma once

#include <QPointer>
#include <QQuickItem>
#include <QQuickWindow>

namespace tarnvale {

/// A window whose content fills it, and which Esc and Ctrl+W close where nothing in it wants them.
class ClosableWindow : public QQuickWindow {
public:
    /// Shows `content`, which has the keyboard first. It may go before the window does.
    void fill(QQuickItem &content);

protected:
    void resizeEvent(QResizeEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    QPointer<QQuickItem> m_content;
};

} // namespace tarnvale
