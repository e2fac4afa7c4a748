#include "presentation/settings/SettingsWindow.h"

#include "presentation/design/ClosableWindow.h"
#include "presentation/design/makeContent.h"
#include "presentation/design/registerDesign.h"
#include "presentation/settings/DesktopFactsReader.h"

#include <QGuiApplication>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QScreen>

namespace tarnvale {

namespace {

/// What the content asks for, as far as the screen has room.
QSize sizeFor(const QQuickItem &content) {
    constexpr int titleBar = 60; // and some air
    const QScreen *const screen = QGuiApplication::primaryScreen();
    const QSize room = screen == nullptr ? QSize() : screen->availableGeometry().size() - QSize(0, titleBar);
    const QSize wanted(qRound(content.implicitWidth()), qRound(content.implicitHeight()));
    return room.isEmpty() ? wanted : wanted.boundedTo(room);
}

} // namespace

/// All that exists only while the window does.
class SettingsWindow::Opened {
public:
    Opened(QQmlEngine &engine, const SettingsContext &context)
        : reader(context.bus, context.tray, context.hotKey),
          controller(context.store, context.platform, context.hotKey, context.actions),
          content(makeContent(engine, QStringLiteral("Tarnvale/Settings/SettingsView.qml"),
                              {{QStringLiteral("controller"), QVariant::fromValue(&controller)}})) {
        controller.setDesktopFacts(reader.facts());
        QObject::connect(&reader, &DesktopFactsReader::changed, &controller,
                         [this] { controller.setDesktopFacts(reader.facts()); });
        window.setTitle(SettingsWindow::tr("Settings"));
        window.setFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                        Qt::WindowCloseButtonHint);
        window.setColor(themeColor("page"));
        const QSize size = sizeFor(*content);
        window.setMinimumSize(size);
        window.setMaximumSize(size);
        window.resize(size);
        window.fill(*content);
        followKeyboard();
    }
    Opened(const Opened &) = delete;
    Opened &operator=(const Opened &) = delete;
    /// A window that is seen hides as it goes, and nobody is left to hear of it.
    ~Opened() {
        QObject::disconnect(&window, &QWindow::visibleChanged, nullptr, nullptr);
        QObject::disconnect(&window, &QWindow::activeChanged, nullptr, nullptr);
    }

    DesktopFactsReader reader;
    SettingsController controller;
    ClosableWindow window;
    std::unique_ptr<QQuickItem> content; ///< it goes before its window and what it shows

private:
    /// Otherwise the X server would give a combination to the program that has taken it, ourselves included.
    void followKeyboard() {
        QObject::connect(&controller, &SettingsController::isRecordingChanged, &window, [this] {
            if (QGuiApplication::platformName() == QStringLiteral("xcb"))
                window.setKeyboardGrabEnabled(controller.isRecording());
        });
        QObject::connect(&window, &QWindow::activeChanged, &controller, [this] {
            if (window.isActive())
                reader.read();
            else
                controller.stopRecording();
        });
    }
};

SettingsWindow::SettingsWindow(QQmlEngine &engine, SettingsContext context)
    : m_engine(engine), m_context(std::move(context)) {}

SettingsWindow::~SettingsWindow() = default;

bool SettingsWindow::isOpen() const {
    return m_opened && m_opened->window.isVisible();
}

QQuickWindow *SettingsWindow::window() const {
    return m_opened ? &m_opened->window : nullptr;
}

SettingsController *SettingsWindow::controller() const {
    return m_opened ? &m_opened->controller : nullptr;
}

void SettingsWindow::show(SettingsController::Tab tab) {
    if (!isOpen())
        open();
    m_opened->controller.setTab(tab);
    m_opened->window.show();
    m_opened->window.raise();
    m_opened->window.requestActivate();
}

void SettingsWindow::open() {
    m_opened = std::make_unique<Opened>(m_engine, m_context);
    connect(&m_opened->controller, &SettingsController::showWebPreviewsChanged, this,
            &SettingsWindow::showWebPreviewsChanged);
    connect(&m_opened->window, &QWindow::visibleChanged, this, [this](bool isVisible) {
        if (isVisible)
            return;
        m_opened->controller.stopRecording();
        Q_EMIT closed();
        QMetaObject::invokeMethod(this, &SettingsWindow::dropClosed, Qt::QueuedConnection);
    });
}

/// The window can't go while it handles the event that closes it.
void SettingsWindow::dropClosed() {
    if (!isOpen())
        m_opened.reset();
}

} // namespace tarnvale
