#pragma once

#include "platform/Platform.h"
#include "presentation/shared/KeyedListModel.h"
#include "probes/ProjectDetector.h"

#include <QAbstractItemModel>
#include <QFuture>
#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include <functional>
#include <set>
#include <string>
#include <vector>

namespace tarnvale {

class PortStore;

/// A command that the sheet offers.
struct SuggestionRow {
    QString id;   ///< the command itself
    QString args; ///< the same as it is shown
    QString source;
    bool isTicked = false;

    [[nodiscard]] QString key() const { return id; }
    [[nodiscard]] static const std::vector<ListRole<SuggestionRow>> &roles();

    bool operator==(const SuggestionRow &) const = default;
};

/// What a project's folder told.
struct FolderReading {
    bool isReadable = false;
    std::vector<ProjectDetector::Suggestion> suggestions;
};

/// How a folder is read: off the main thread.
using FolderReader = std::function<QFuture<FolderReading>(const std::string &folder)>;

/// Reads it with `ProjectDetector`.
[[nodiscard]] QFuture<FolderReading> readProjectFolder(const std::string &folder);

/// The sheet that makes a stack out of a project's folder. Main thread.
class NewStackController : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("belongs to the page of the stacks")

    Q_PROPERTY(bool isOpen READ isOpen NOTIFY isOpenChanged)
    Q_PROPERTY(QString folder READ folder NOTIFY isOpenChanged)
    Q_PROPERTY(QString name READ name WRITE setName NOTIFY nameChanged)
    Q_PROPERTY(QString custom READ custom WRITE setCustom NOTIFY customChanged)
    Q_PROPERTY(QAbstractItemModel *suggestions READ suggestions CONSTANT)
    Q_PROPERTY(int suggestionCount READ suggestionCount NOTIFY suggestionsChanged)
    Q_PROPERTY(QString heading READ heading NOTIFY suggestionsChanged)
    Q_PROPERTY(QString problem READ problem NOTIFY suggestionsChanged)
    Q_PROPERTY(bool canCreate READ canCreate NOTIFY suggestionsChanged)

public:
    /// Both outlive this object.
    NewStackController(PortStore &store, const Platform &platform, FolderReader reader);

    [[nodiscard]] bool isOpen() const { return m_isOpen; }
    [[nodiscard]] QString folder() const;
    [[nodiscard]] const QString &name() const { return m_name; }
    [[nodiscard]] const QString &custom() const { return m_custom; }
    [[nodiscard]] QAbstractItemModel *suggestions() { return &m_rows; }
    [[nodiscard]] int suggestionCount() const { return m_rows.rowCount(); }
    /// What stands above the commands; empty while the folder is read, if that is quick.
    [[nodiscard]] QString heading() const;
    /// Why the folder told nothing; empty when it was read.
    [[nodiscard]] QString problem() const;
    [[nodiscard]] bool canCreate() const { return !m_selected.empty(); }

    void setName(const QString &name);
    void setCustom(const QString &custom);

    /// Opens the sheet for this folder, whatever it showed before.
    void open(const std::string &folder);

    Q_INVOKABLE void setTicked(const QString &id, bool isTicked);
    /// Takes the command of the field into the list, ticked, and empties the field.
    Q_INVOKABLE void addCustom();
    /// Saves the ticked commands, in the list's order, and closes the sheet.
    Q_INVOKABLE void create();
    Q_INVOKABLE void cancel();

Q_SIGNALS:
    void isOpenChanged();
    void nameChanged();
    void customChanged();
    void suggestionsChanged();
    /// The command of the field stands in this row of the list.
    void customAdded(int row);

private:
    enum class Reading { quick, slow, done, failed };

    void take(const FolderReading &reading);
    void addSuggestion(const ProjectDetector::Suggestion &suggestion);
    void updateRows();
    void close();

    PortStore &m_store;
    Clock &m_clock;
    FolderReader m_reader;
    KeyedListModel<SuggestionRow> m_rows;
    std::vector<ProjectDetector::Suggestion> m_suggestions;
    std::set<std::string> m_known;    ///< the commands of the list
    std::set<std::string> m_selected; ///< those that are ticked
    std::string m_folder;
    QString m_name;
    QString m_custom;
    Reading m_reading = Reading::done;
    int m_openings = 0;
    bool m_isOpen = false;
};

} // namespace tarnvale
