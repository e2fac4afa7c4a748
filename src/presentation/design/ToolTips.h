#pragma once

#include <QObject>
#include <QPointer>
#include <QQmlEngine>
#include <QQuickItem>
#include <QTimer>

#include <memory>

class QLabel;

namespace tarnvale {

/// `text` fit for a tool tip: no more than 2000 characters, no trailing white space, no control characters
/// but line feeds.
[[nodiscard]] QString toolTipText(const QString &text);

/// The one tool tip that is shown at a time: plain text in a window of its own, so that it may leave the
/// bounds of the window that it belongs to.
class ToolTips : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
public:
    static ToolTips &instance();
    static ToolTips *create(QQmlEngine *, QJSEngine *);
    ToolTips(const ToolTips &) = delete;
    ToolTips &operator=(const ToolTips &) = delete;
    ~ToolTips() override;

    /// Shows `text` beside `item` once the pointer has rested; at once while another tip shows. One that is
    /// shown for `item` takes the new text. Nothing for an empty text.
    Q_INVOKABLE void show(QQuickItem *item, const QString &text);

    /// Ends the tip of `item`, shown or due; any without an item.
    Q_INVOKABLE void hide(QQuickItem *item = nullptr);

    /// What is shown; empty while nothing is.
    [[nodiscard]] QString shownText() const;

private:
    explicit ToolTips(QObject *application);
    void open();
    void place();

    QTimer m_delay;
    QTimer m_end;
    QPointer<QQuickItem> m_item;
    QString m_text;
    std::unique_ptr<QLabel> m_label;
};

} // namespace tarnvale
