#pragma once

#include "platform/Platform.h"
#include "probes/LogTail.h"

#include <QColor>
#include <QObject>
#include <QPointer>
#include <QQuickTextDocument>
#include <QString>
#include <QStringList>
#include <QSyntaxHighlighter>
#include <QtQml/qqmlregistration.h>

#include <memory>
#include <optional>

namespace tarnvale {

/// A log that grows, played into the document of a text editor: lines that left its head go, new ones are
/// added at its end, so that what the user has selected stays selected. Main thread.
class LogDocument : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("belongs to the inspector")

    Q_PROPERTY(QQuickTextDocument *document READ document WRITE setDocument NOTIFY documentChanged)
    Q_PROPERTY(QColor ink MEMBER m_ink NOTIFY colorsChanged)
    Q_PROPERTY(QColor warning MEMBER m_warning NOTIFY colorsChanged)
    Q_PROPERTY(QColor error MEMBER m_error NOTIFY colorsChanged)
    Q_PROPERTY(bool isFollowing READ isFollowing NOTIFY isFollowingChanged)
    Q_PROPERTY(bool isPaused READ isPaused NOTIFY isPausedChanged)
    Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY linesChanged)

public:
    explicit LogDocument(const Platform &platform);
    LogDocument(const LogDocument &) = delete;
    LogDocument &operator=(const LogDocument &) = delete;
    ~LogDocument() override;

    /// Where the lines are shown; null for nowhere.
    [[nodiscard]] QQuickTextDocument *document() const { return m_document; }
    void setDocument(QQuickTextDocument *document);

    [[nodiscard]] bool isFollowing() const { return m_tail.source().has_value(); }
    [[nodiscard]] bool isPaused() const { return m_tail.isPaused(); }
    [[nodiscard]] bool isEmpty() const; ///< no line has any text
    [[nodiscard]] const QStringList &lines() const { return m_lines; }

    /// See `LogTail::follow`.
    void follow(const std::optional<LogSource> &source);

    Q_INVOKABLE void togglePaused();

Q_SIGNALS:
    void documentChanged();
    void colorsChanged();
    void isFollowingChanged();
    void isPausedChanged();
    void linesChanged();

private:
    void takeLines();
    void colour();

    LogTail m_tail;
    QStringList m_lines;
    QPointer<QQuickTextDocument> m_document;
    QPointer<QSyntaxHighlighter> m_highlighter;
    QColor m_ink;
    QColor m_warning;
    QColor m_error;
};

/// How many lines left the head of `before` on the way to `after`, of which the rest of `before` is the head.
/// Its last line may have grown: it was read while it was being written. All of them when the two have
/// nothing in common.
[[nodiscard]] qsizetype linesGone(const QStringList &before, const QStringList &after);

} // namespace tarnvale
