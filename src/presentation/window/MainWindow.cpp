#include "presentation/window/MainWindow.h"

#include "presentation/design/Appearance.h"
#include "presentation/design/makeContent.h"

#include <QCloseEvent>

#include <algorithm>

namespace tarnvale {

MainWindow::MainWindow(QQmlEngine &engine, const QVariantMap &controllers)
    : m_content(makeContent(engine, QStringLiteral("Tarnvale/Window/MainView.qml"), controllers)) {
    setMinimumSize(leastSize());
    m_content->setParentItem(contentItem());
    for (const auto changed : {&QWindow::widthChanged, &QWindow::heightChanged}) {
        connect(this, changed, this, &MainWindow::fitContent);
        connect(this, changed, this, &MainWindow::placeChanged);
    }
    for (const auto changed : {&QWindow::xChanged, &QWindow::yChanged})
        connect(this, changed, this, &MainWindow::placeChanged);
    fitContent();
}

MainWindow::~MainWindow() = default;

QSize MainWindow::leastSize() {
    constexpr QSize least(800, 560);
    return least * std::max(1.0, Appearance::instance().textScale());
}

void MainWindow::fitContent() {
    m_content->setSize(QSizeF(size()));
}

bool MainWindow::event(QEvent *event) {
    if (event->type() != QEvent::Close)
        return QQuickWindow::event(event);
    // It comes back as it was, so it is only hidden. A window that refuses would keep the program from
    // ending.
    event->accept();
    hide();
    Q_EMIT closed();
    return true;
}

} // namespace tarnvale
