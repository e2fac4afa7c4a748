#include "presentation/design/ToolTips.h"

#include "presentation/design/registerDesign.h"

#include <QCursor>
#include <QGuiApplication>
#include <QLabel>
#include <QQuickWindow>
#include <QScreen>

#include <algorithm>

namespace tarnvale {

namespace {

constexpr int delay = 700;
constexpr int longestShown = 12000;
constexpr int widest = 600;
constexpr int belowPointer = 18;
constexpr int gap = 4;

QString styleSheet() {
    return QStringLiteral("QLabel { background: %1; color: %2; border: 1px solid %3; padding: 4px 7px; }")
        .arg(themeColor("surfaceRaised").name(), themeColor("ink").name(), themeColor("tipStroke").name());
}

std::unique_ptr<QLabel> makeLabel() {
    auto label = std::make_unique<QLabel>(nullptr, Qt::ToolTip | Qt::BypassGraphicsProxyWidget);
    label->setTextFormat(Qt::PlainText);
    label->setAttribute(Qt::WA_ShowWithoutActivating);
    label->setAttribute(Qt::WA_TransparentForMouseEvents);
    label->setFocusPolicy(Qt::NoFocus);
    return label;
}

/// As wide as its lines need, and wrapped where they need too much.
void fit(QLabel &label) {
    label.setWordWrap(false);
    const bool isWide = label.sizeHint().width() > widest;
    label.setWordWrap(isWide);
    label.resize(isWide ? QSize(widest, label.heightForWidth(widest)) : label.sizeHint());
}

} // namespace

QString toolTipText(const QString &text) {
    constexpr qsizetype longest = 2000;
    QString result = text.size() > longest ? text.left(longest - 1) + QChar(0x2026) : text;
    for (QChar &character : result) {
        if (character.category() == QChar::Other_Control && character != QLatin1Char('\n'))
            character = QLatin1Char(' ');
    }
    while (!result.isEmpty() && result.back().isSpace())
        result.chop(1);
    return result;
}

ToolTips &ToolTips::instance() {
    static QPointer<ToolTips> instance;
    if (!instance)
        instance = new ToolTips(QCoreApplication::instance());
    return *instance;
}

ToolTips *ToolTips::create(QQmlEngine *, QJSEngine *) {
    ToolTips *tips = &instance();
    QJSEngine::setObjectOwnership(tips, QJSEngine::CppOwnership);
    return tips;
}

ToolTips::ToolTips(QObject *application) : QObject(application) {
    m_delay.setSingleShot(true);
    m_delay.setInterval(delay);
    m_end.setSingleShot(true);
    m_end.setInterval(longestShown);
    connect(&m_delay, &QTimer::timeout, this, &ToolTips::open);
    connect(&m_end, &QTimer::timeout, this, [this] { hide(); });
    // A widget must not outlive the application.
    connect(qGuiApp, &QCoreApplication::aboutToQuit, this, [this] { hide(); });
}

ToolTips::~ToolTips() = default;

void ToolTips::show(QQuickItem *item, const QString &text) {
    const QString shown = toolTipText(text);
    if (item == nullptr || shown.isEmpty())
        return hide(item);
    const bool isOpen = m_label != nullptr;
    m_item = item;
    m_text = shown;
    if (isOpen)
        open();
    else
        m_delay.start();
}

void ToolTips::hide(QQuickItem *item) {
    if (item != nullptr && item != m_item)
        return;
    m_delay.stop();
    m_end.stop();
    m_item.clear();
    m_label.reset();
}

QString ToolTips::shownText() const {
    return m_label ? m_label->text() : QString();
}

void ToolTips::open() {
    if (!m_item || !m_item->window() || !m_item->isVisible() || !m_item->window()->isVisible())
        return hide();
    if (!m_label)
        m_label = makeLabel();
    m_label->setStyleSheet(styleSheet());
    m_label->setText(m_text);
    fit(*m_label);
    m_label->winId();
    m_label->windowHandle()->setTransientParent(m_item->window());
    place();
    m_label->show();
    m_end.start();
}

/// Below the pointer, or above it where the screen ends.
void ToolTips::place() {
    const QScreen *screen = m_item->window()->screen();
    const QRect room = screen->availableGeometry();
    QPoint corner = QCursor::pos(screen) + QPoint(0, belowPointer);
    if (corner.y() + m_label->height() > room.bottom())
        corner.setY(QCursor::pos(screen).y() - m_label->height() - gap);
    corner.setX(std::clamp(corner.x(), room.left(), std::max(room.left(), room.right() - m_label->width())));
    corner.setY(std::max(room.top(), corner.y()));
    m_label->move(corner);
}

} // namespace tarnvale
