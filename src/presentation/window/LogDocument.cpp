#include "presentation/window/LogDocument.h"

#include "presentation/plainText.h"
#include "probes/logLines.h"

#include <QTextCursor>
#include <QTextDocument>

#include <algorithm>

namespace tarnvale {

namespace {

/// A log may hold one line of a megabyte; a text layout of it takes seconds.
constexpr std::size_t longestLine = 2000; // characters

class LogHighlighter : public QSyntaxHighlighter {
public:
    LogHighlighter(QTextDocument *document, const QColor &ink, const QColor &warning, const QColor &error)
        : QSyntaxHighlighter(document), m_ink(ink), m_warning(warning), m_error(error) {}

protected:
    void highlightBlock(const QString &text) override {
        const LogLineKind kind = logLineKind(text.toStdString());
        setFormat(0, static_cast<int>(text.size()),
                  kind == LogLineKind::error     ? m_error
                  : kind == LogLineKind::warning ? m_warning
                                                 : m_ink);
    }

private:
    QColor m_ink;
    QColor m_warning;
    QColor m_error;
};

void removeFirst(QTextCursor &cursor, qsizetype lines) {
    cursor.movePosition(QTextCursor::Start);
    for (qsizetype line = 0; line < lines; ++line)
        cursor.movePosition(QTextCursor::NextBlock, QTextCursor::KeepAnchor);
    cursor.removeSelectedText();
}

} // namespace

qsizetype linesGone(const QStringList &before, const QStringList &after) {
    for (qsizetype gone = 0; gone < before.size(); ++gone) {
        const qsizetype kept = before.size() - gone;
        if (kept <= after.size() && std::equal(before.begin() + gone, before.end() - 1, after.begin()) &&
            after[kept - 1].startsWith(before.last()))
            return gone;
    }
    return before.size();
}

LogDocument::LogDocument(const Platform &platform) : m_tail(platform.clock, platform.tools) {
    connect(&m_tail, &LogTail::textChanged, this, &LogDocument::takeLines);
    connect(&m_tail, &LogTail::sourceChanged, this, &LogDocument::isFollowingChanged);
    connect(&m_tail, &LogTail::isPausedChanged, this, &LogDocument::isPausedChanged);
    connect(this, &LogDocument::colorsChanged, this, &LogDocument::colour);
}

LogDocument::~LogDocument() = default;

bool LogDocument::isEmpty() const {
    return std::all_of(m_lines.begin(), m_lines.end(), [](const QString &line) { return line.isEmpty(); });
}

void LogDocument::setDocument(QQuickTextDocument *document) {
    if (m_document == document)
        return;
    m_document = document;
    if (m_document) {
        m_document->textDocument()->setUndoRedoEnabled(false);
        m_document->textDocument()->setPlainText(m_lines.join(QLatin1Char('\n')));
        colour();
    }
    Q_EMIT documentChanged();
}

void LogDocument::colour() {
    delete m_highlighter;
    if (m_document && m_ink.isValid())
        m_highlighter = new LogHighlighter(m_document->textDocument(), m_ink, m_warning, m_error);
}

void LogDocument::follow(const std::optional<LogSource> &source) {
    if (!source)
        m_tail.stop();
    m_tail.follow(source);
}

void LogDocument::togglePaused() {
    m_tail.setPaused(!m_tail.isPaused());
}

void LogDocument::takeLines() {
    QStringList lines;
    for (const std::string &line : m_tail.lines())
        lines.append(cutPlainText(line, longestLine));
    if (!lines.isEmpty() && lines.last().isEmpty()) // what follows the last line feed is still to come
        lines.removeLast();
    const QStringList before = std::exchange(m_lines, lines);
    if (m_document) {
        QTextDocument *const text = m_document->textDocument();
        const qsizetype gone = linesGone(before, m_lines);
        if (before.isEmpty() || gone == before.size()) {
            text->setPlainText(m_lines.join(QLatin1Char('\n')));
        } else {
            QTextCursor cursor(text);
            cursor.beginEditBlock();
            removeFirst(cursor, gone);
            cursor.movePosition(QTextCursor::End);
            const qsizetype kept = before.size() - gone;
            cursor.insertText(m_lines[kept - 1].mid(before.last().size()));
            for (const QString &line : m_lines.mid(kept)) {
                cursor.insertBlock();
                cursor.insertText(line);
            }
            cursor.endEditBlock();
        }
    }
    Q_EMIT linesChanged();
}

} // namespace tarnvale
