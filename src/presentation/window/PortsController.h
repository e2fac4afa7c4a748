#pragma once

#include "presentation/shared/PortRowsController.h"
#include "presentation/window/InspectorController.h"
#include "presentation/window/PagePictures.h"

namespace tarnvale {

/// The window's page of ports: its rows, and the inspector of the one that is selected. Main thread.
class PortsController : public PortRowsController {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("belongs to the window")

    Q_PROPERTY(tarnvale::InspectorController *inspector READ inspector CONSTANT)
    Q_PROPERTY(tarnvale::PagePictures *pictures READ pictures CONSTANT)
    Q_PROPERTY(QStringList sectionSymbols READ sectionSymbols NOTIFY rowsChanged)
    Q_PROPERTY(QString emptyMessage READ emptyMessage NOTIFY emptyMessageChanged)
    Q_PROPERTY(bool isInspectorShown READ isInspectorShown NOTIFY isInspectorShownChanged)

public:
    /// All outlive this object.
    PortsController(PortStore &store, const Platform &platform, PagePictures &pictures);

    [[nodiscard]] InspectorController *inspector() { return &m_inspector; }
    [[nodiscard]] PagePictures *pictures() const { return &m_pictures; }
    [[nodiscard]] const QStringList &sectionSymbols() const { return m_sectionSymbols; }
    [[nodiscard]] const QString &emptyMessage() const { return m_emptyMessage; }
    [[nodiscard]] bool isInspectorShown() const { return m_isInspectorShown; }

    /// Shows these rows, or that message when there are none.
    void show(std::vector<RowSection> sections, const QString &emptyMessage);
    /// Selects the row of `port`, which may yet have to come.
    void selectPort(const ListeningPort &port);
    /// The page is on the screen. While it isn't, no log is read.
    void setShown(bool isShown);

    Q_INVOKABLE void toggleInspector();
    /// What a key of the list does; whether it does anything. `key` and `modifiers` are Qt's.
    Q_INVOKABLE bool handleKey(int key, int modifiers, bool isRepeat = false);

Q_SIGNALS:
    void emptyMessageChanged();
    void isInspectorShownChanged();

private:
    void inspect();

    PagePictures &m_pictures;
    InspectorController m_inspector;
    QStringList m_sectionSymbols;
    QString m_emptyMessage;
    bool m_isInspectorShown = true;
};

} // namespace tarnvale
