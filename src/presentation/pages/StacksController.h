#pragma once

#include "platform/Platform.h"
#include "presentation/pages/NewStackController.h"
#include "presentation/pages/StackCardRow.h"
#include "presentation/pages/StackStarter.h"
#include "presentation/pages/chooseFolder.h"
#include "presentation/shared/MomentaryKeys.h"
#include "presentation/shared/ViewUpdates.h"

#include <QAbstractItemModel>
#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace tarnvale {

/// The page of the stacks: what is saved, what of it runs, and the way to a new one. Main thread.
class StacksController : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("belongs to the window")

    Q_PROPERTY(QAbstractItemModel *stacks READ stacks CONSTANT)
    Q_PROPERTY(int stackCount READ stackCount NOTIFY stackCountChanged)
    Q_PROPERTY(tarnvale::NewStackController *newStack READ newStack CONSTANT)

public:
    /// Both outlive this object.
    StacksController(PortStore &store, const Platform &platform, FolderChooser chooser = chooseProjectFolder,
                     FolderReader reader = readProjectFolder);

    [[nodiscard]] QAbstractItemModel *stacks() { return &m_stacks; }
    [[nodiscard]] int stackCount() const { return m_stacks.rowCount(); }
    [[nodiscard]] NewStackController *newStack() { return &m_newStack; }

    void setShown(bool isShown);

    /// Lets the user choose a folder, then opens the sheet for it. Nothing while a choice is under way.
    Q_INVOKABLE void newFromFolder();
    /// Starts what of the stack doesn't run.
    Q_INVOKABLE void startStack(const QString &stackId);
    /// The first time arms it, the second time within 3 seconds deletes the stack.
    Q_INVOKABLE void deleteInTwoSteps(const QString &stackId);

Q_SIGNALS:
    void stackCountChanged();

private:
    void update();

    PortStore &m_store;
    FolderChooser m_chooser;
    NewStackController m_newStack;
    KeyedListModel<StackCardRow> m_stacks;
    MomentaryKeys m_deletions;
    StackStarter m_starter;
    ViewUpdates m_updates;
    bool m_isChoosing = false;
};

} // namespace tarnvale
