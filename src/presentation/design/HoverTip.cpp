#include "presentation/design/HoverTip.h"

#include "presentation/design/ToolTips.h"

namespace tarnvale {

HoverTip::~HoverTip() {
    if (m_isHovered)
        ToolTips::instance().hide(target());
}

void HoverTip::setText(const QString &text) {
    if (text == m_text)
        return;
    m_text = text;
    if (m_isHovered)
        ToolTips::instance().show(target(), m_text);
    Q_EMIT textChanged();
}

void HoverTip::setHovered(bool isHovered) {
    if (isHovered == m_isHovered)
        return;
    m_isHovered = isHovered;
    if (m_isHovered)
        ToolTips::instance().show(target(), m_text);
    else
        ToolTips::instance().hide(target());
    Q_EMIT hoveredChanged();
}

QQuickItem *HoverTip::target() const {
    return m_target ? m_target.get() : qobject_cast<QQuickItem *>(parent());
}

void HoverTip::setTarget(QQuickItem *target) {
    if (target == m_target)
        return;
    m_target = target;
    Q_EMIT targetChanged();
}

} // namespace tarnvale
