#include "presentation/design/ClosableWindow.h"

#include <QKeyEvent>

namespace tarnvale {

void ClosableWindow::fill(QQuickItem &content) {
    m_content = &content;
    content.setParentItem(contentItem());
    content.setSize(size());
    content.setFocus(true);
}

void ClosableWindow::resizeEvent(QResizeEvent *event) {
    QQuickWindow::resizeEvent(event);
    if (m_content)
        m_content->setSize(size());
}

void ClosableWindow::keyPressEvent(QKeyEvent *event) {
    event->ignore();
    QQuickWindow::keyPressEvent(event);
    const bool closes = event->key() == Qt::Key_Escape || event->keyCombination() == (Qt::CTRL | Qt::Key_W);
    if (!event->isAccepted() && closes) {
        event->accept();
        close();
    }
}

} // namespace tarnvale
