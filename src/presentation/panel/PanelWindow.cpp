#include "presentation/panel/PanelWindow.h"

#include "presentation/design/Appearance.h"
#include "presentation/design/isComposited.h"
#include "presentation/design/makeContent.h"
#include "presentation/design/popUpMenu.h"
#include "presentation/panel/PanelFooterController.h"
#include "presentation/panel/PortListController.h"

#include <QKeyEvent>
#include <QSurfaceFormat>

namespace tarnvale {

namespace {

constexpr int fadeInTime = 120;  // milliseconds
constexpr int fadeOutTime = 100; // milliseconds

QSize sizeOf(const QQuickItem &content) {
    return QSizeF(content.implicitWidth(), content.implicitHeight()).toSize();
}

/// Columns know their height only after the layout that precedes a frame, and a hidden window has no frames.
void layOut(QQuickItem &item) {
    const auto children = item.childItems();
    for (QQuickItem *child : children)
        layOut(*child);
    item.ensurePolished();
}

} // namespace

PanelWindow::PanelWindow(QQmlEngine &engine, PortListController &list, PanelFooterController &footer) {
    setTitle(QStringLiteral("Tarnvale"));
    setFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint | Qt::NoDropShadowWindowHint);
    QSurfaceFormat withAlpha = format();
    withAlpha.setAlphaBufferSize(8);
    setFormat(withAlpha);
    setColor(Qt::transparent);
    m_content = makeContent(engine, QStringLiteral("Tarnvale/Panel/MenuPanelContent.qml"),
                            {{QStringLiteral("list"), QVariant::fromValue(&list)},
                             {QStringLiteral("footer"), QVariant::fromValue(&footer)}});
    m_content->setParentItem(contentItem());
    connect(m_content.get(), &QQuickItem::implicitHeightChanged, this, &PanelWindow::followContent);
    connect(m_content.get(), &QQuickItem::implicitWidthChanged, this, &PanelWindow::followContent);
    connect(&m_fade, &QVariantAnimation::valueChanged, this,
            [this](const QVariant &value) { contentItem()->setOpacity(value.toDouble()); });
    connect(&m_fade, &QVariantAnimation::finished, this, [this] {
        if (m_isClosing) {
            m_isClosing = false;
            hide();
        }
    });
    connect(this, &QWindow::activeChanged, this, [this] {
        if (!isActive() && isVisible() && !isMenuOpen())
            Q_EMIT keyboardLost();
    });
    resize(fittingSize());
}

PanelWindow::~PanelWindow() = default;

QSize PanelWindow::fittingSize() const {
    layOut(*m_content);
    return sizeOf(*m_content);
}

void PanelWindow::place(const PanelPlacement &placement, const QRect &visible) {
    m_placement = placement;
    m_isPlaced = true;
    m_content->setProperty("maxHeight", roomFor(placement, visible));
    updateTranslucency();
    m_placement = resizePanel(m_placement, fittingSize());
    m_content->setSize(m_placement.frame.size());
    setGeometry(m_placement.frame);
}

void PanelWindow::followContent() {
    const QSize size = sizeOf(*m_content);
    if (size.isEmpty())
        return;
    m_content->setSize(size);
    if (!m_isPlaced) {
        resize(size);
        return;
    }
    if (size == m_placement.frame.size())
        return;
    m_placement = resizePanel(m_placement, size);
    setGeometry(m_placement.frame);
}

void PanelWindow::updateTranslucency() {
    m_content->setProperty("isTranslucent", isComposited());
}

void PanelWindow::fadeTo(double opacity, int milliseconds) {
    m_fade.stop();
    const bool isSeen =
        m_content->property("isTranslucent").toBool() && !Appearance::instance().reduceMotion();
    m_fade.setStartValue(contentItem()->opacity());
    m_fade.setEndValue(opacity);
    m_fade.setDuration(isSeen ? milliseconds : 0);
    m_fade.start();
}

void PanelWindow::fadeIn() {
    m_isClosing = false;
    if (!isVisible())
        contentItem()->setOpacity(0);
    show();
    raise();
    requestActivate();
    fadeTo(1, fadeInTime);
}

void PanelWindow::fadeOut() {
    m_isClosing = true;
    fadeTo(0, fadeOutTime);
}

void PanelWindow::keyPressEvent(QKeyEvent *event) {
    event->ignore();
    QQuickWindow::keyPressEvent(event);
    if (event->isAccepted())
        return;
    if (event->key() == Qt::Key_Escape)
        Q_EMIT cancelled();
    else if (event->keyCombination() == (Qt::CTRL | Qt::Key_Q))
        Q_EMIT quitChosen();
}

} // namespace tarnvale
