#include "presentation/update/UpdateWindow.h"

#include "presentation/design/Appearance.h"
#include "presentation/design/ClosableWindow.h"
#include "presentation/design/makeContent.h"
#include "presentation/design/registerDesign.h"
#include "updates/UpdateChecker.h"

#include <QCoreApplication>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>

#include <algorithm>

namespace tarnvale {

namespace {

// At the usual size of text.
constexpr QSize usualSize(480, 420);
constexpr QSize smallestSize(380, 300);

} // namespace

/// All that exists only while the window does.
class UpdateWindow::Opened {
public:
    Opened(QQmlEngine &engine, UpdateChecker &checker, const QString &version)
        : controller(checker, version),
          content(makeContent(engine, QStringLiteral("Tarnvale/Update/UpdateView.qml"),
                              {{QStringLiteral("controller"), QVariant::fromValue(&controller)}})) {
        window.setTitle(UpdateWindow::tr("Tarnvale Update"));
        window.setColor(themeColor("page"));
        const double growth = std::max(1.0, Appearance::instance().textScale());
        window.setMinimumSize(smallestSize * growth);
        window.resize(usualSize * growth);
        window.fill(*content);
    }
    Opened(const Opened &) = delete;
    Opened &operator=(const Opened &) = delete;
    ~Opened() = default;

    UpdateViewController controller;
    ClosableWindow window;
    std::unique_ptr<QQuickItem> content; ///< it goes before its window and what it shows
};

UpdateWindow::UpdateWindow(QQmlEngine &engine, UpdateChecker &checker, QString version)
    : m_engine(engine), m_checker(checker), m_version(std::move(version)) {
    connect(QCoreApplication::instance(), &QCoreApplication::aboutToQuit, this, [this] { m_opened.reset(); });
    connect(&checker, &UpdateChecker::stateChanged, this, [this] {
        if (isOpen() && m_checker.state().phase == UpdateState::Phase::idle)
            m_opened->window.close(); // there is nothing left to show
    });
}

UpdateWindow::~UpdateWindow() {
    m_opened.reset(); // what its end leads to must not find it
}

bool UpdateWindow::isOpen() const {
    return m_opened && m_opened->window.isVisible();
}

QQuickWindow *UpdateWindow::window() const {
    return m_opened ? &m_opened->window : nullptr;
}

void UpdateWindow::show() {
    if (!isOpen())
        open();
    m_opened->window.show();
    m_opened->window.raise();
    m_opened->window.requestActivate();
}

void UpdateWindow::open() {
    m_opened = std::make_unique<Opened>(m_engine, m_checker, m_version);
    QQuickWindow *const window = &m_opened->window;
    connect(&m_opened->controller, &UpdateViewController::closeRequested, window, &QWindow::close);
    connect(window, &QWindow::visibleChanged, this, [this](bool isVisible) {
        if (isVisible)
            return;
        if (m_checker.state().phase != UpdateState::Phase::idle)
            m_checker.dismiss();
        QMetaObject::invokeMethod(this, &UpdateWindow::dropClosed, Qt::QueuedConnection);
    });
}

/// The window can't go while it handles the event that closes it.
void UpdateWindow::dropClosed() {
    if (!isOpen())
        m_opened.reset();
}

} // namespace tarnvale
