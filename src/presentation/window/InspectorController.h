#pragma once

#include "presentation/window/InspectorFacts.h"
#include "presentation/window/LogDocument.h"

#include <QObject>
#include <QPointF>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include <optional>
#include <vector>

namespace tarnvale {

/// One port in all its detail, and what can be done with it. Main thread.
///
/// What is armed or was copied belongs to the row that it was armed for; another row starts afresh. What lies
/// on the disk is read in the background, and comes a moment later than the rest.
class InspectorController : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("belongs to the page of ports")

    Q_PROPERTY(QString rowId READ rowId NOTIFY rowIdChanged)
    Q_PROPERTY(bool isPresent READ isPresent NOTIFY factsChanged)
    Q_PROPERTY(tarnvale::InspectorFacts facts READ facts NOTIFY factsChanged)
    Q_PROPERTY(QAbstractItemModel *details READ details CONSTANT)
    Q_PROPERTY(bool armedKill READ armedKill NOTIFY armedKillChanged)
    Q_PROPERTY(QString copiedField READ copiedField NOTIFY copiedFieldChanged)
    Q_PROPERTY(tarnvale::LogDocument *log READ log CONSTANT)
    Q_PROPERTY(QString phoneUrl READ phoneUrl NOTIFY phoneChanged)
    Q_PROPERTY(QString phoneCode READ phoneCode NOTIFY phoneChanged)

public:
    /// Both outlive this object.
    InspectorController(PortStore &store, const Platform &platform);

    [[nodiscard]] const QString &rowId() const { return m_rowId; } ///< empty while there is none
    [[nodiscard]] bool isPresent() const { return m_entry.has_value(); }
    [[nodiscard]] const InspectorFacts &facts() const { return m_facts; }
    [[nodiscard]] QAbstractItemModel *details() { return &m_details; }
    [[nodiscard]] bool armedKill() const { return m_kill.contains(m_rowId); }
    /// The label of the line that has just been copied.
    [[nodiscard]] QString copiedField() const { return m_copies.key(); }
    [[nodiscard]] LogDocument *log() { return &m_log; }
    /// Where other devices find the port; empty without a network.
    [[nodiscard]] const QString &phoneUrl() const { return m_phoneUrl; }
    /// The same as a QR code: the address of a picture.
    [[nodiscard]] const QString &phoneCode() const { return m_phoneCode; }

    /// Shows `entry` as the store knows it now.
    void inspect(const std::optional<RowEntry> &entry);
    /// It is on the screen. While it isn't, no log is read.
    void setShown(bool isShown);

    Q_INVOKABLE void openInBrowser();
    Q_INVOKABLE void copyAddress();
    Q_INVOKABLE void restart();
    /// Asks for the port's menu at a place of the screen; see `menuRequested`.
    Q_INVOKABLE void requestMenu(const QPointF &place);
    /// Copies a line's text; `field` is its label.
    Q_INVOKABLE void copyField(const QString &field, const QString &text);
    Q_INVOKABLE void revealFolder();
    Q_INVOKABLE void setWatched(bool isWatched);
    /// Whether the path can be saved: it is a path, and another one than is stored.
    [[nodiscard]] Q_INVOKABLE bool canSaveHealthPath(const QString &path) const;
    Q_INVOKABLE void saveHealthPath(const QString &path);
    Q_INVOKABLE void share();
    Q_INVOKABLE void stopSharing();
    Q_INVOKABLE void copyPublicURL();
    Q_INVOKABLE void openLog();
    /// The first time arms it, the second time within 4 seconds stops the port.
    Q_INVOKABLE void stopInTwoSteps();

Q_SIGNALS:
    void rowIdChanged();
    void factsChanged();
    void armedKillChanged();
    void copiedFieldChanged();
    void phoneChanged();
    void menuRequested(const QString &rowId, const QPointF &place);

private:
    void begin(const QString &rowId);
    void update();
    void readFiles();
    void readPhone();
    void followLog();

    PortStore &m_store;
    Platform m_platform;
    QString m_rowId;
    std::optional<RowEntry> m_entry;
    InspectorFiles m_files;
    InspectorFacts m_facts;
    KeyedListModel<DetailLine> m_details;
    LogDocument m_log;
    MomentaryKeys m_kill;
    MomentaryKeys m_copies;
    QString m_phoneUrl;
    QString m_phoneCode;
    bool m_isShown = false;
    bool m_isReading = false;
};

} // namespace tarnvale
