#include "presentation/window/PortsController.h"

#include "presentation/shared/SidebarItem.h"
#include "store/PortStore.h"

namespace tarnvale {

PortsController::PortsController(PortStore &store, const Platform &platform, PagePictures &pictures)
    : PortRowsController(store, platform), m_pictures(pictures), m_inspector(store, platform) {
    connect(this, &PortRowsController::selectionChanged, this, &PortsController::inspect);
}

void PortsController::show(std::vector<RowSection> sections, const QString &emptyMessage) {
    if (std::exchange(m_emptyMessage, emptyMessage) != emptyMessage)
        Q_EMIT emptyMessageChanged();
    m_sectionSymbols.clear();
    for (const RowSection &section : sections)
        m_sectionSymbols.append(symbol(sidebarItem(section.group)));
    showSections(std::move(sections));
    inspect();
}

void PortsController::selectPort(const ListeningPort &port) {
    const QString id = QString::fromStdString(port.id());
    for (int row = 0; row < rowCount(); ++row) // a further port of a row stands for the row
        if (const RowEntry *each = entryAt(row);
            each->port->pid == port.pid && std::find(each->otherPorts.begin(), each->otherPorts.end(),
                                                     port.port) != each->otherPorts.end()) {
            setSelection(QString::fromStdString(each->id()));
            return;
        }
    setSelection(id);
}

void PortsController::setShown(bool isShown) {
    m_inspector.setShown(isShown);
}

/// The row may have gone, and come back with the next scan.
void PortsController::inspect() {
    const RowEntry *const row = entry(selection());
    m_inspector.inspect(row == nullptr ? std::nullopt : std::optional(*row));
}

void PortsController::toggleInspector() {
    m_isInspectorShown = !m_isInspectorShown;
    Q_EMIT isInspectorShownChanged();
}

bool PortsController::handleKey(int key, int modifiers, bool isRepeat) {
    const auto all = Qt::KeyboardModifiers::fromInt(static_cast<unsigned>(modifiers));
    const auto held = all & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier);
    if (const auto isDone = handleRowKey(key, all))
        return *isDone;
    const RowEntry *const row = entry(selection());
    if (row == nullptr)
        return false;
    const bool isReturn = key == Qt::Key_Return || key == Qt::Key_Enter;
    if (key == Qt::Key_Menu || (key == Qt::Key_F10 && all & Qt::ShiftModifier)) {
        if (!isRepeat)
            Q_EMIT menuKeyPressed(selection());
        return true;
    }
    if (!isReturn || held || !store().isWebPort(row->port))
        return false;
    if (!isRepeat)
        openInBrowser(selection());
    return true;
}

} // namespace tarnvale
