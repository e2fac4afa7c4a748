#pragma once

#include <QQmlEngine>
#include <QQuickWindow>
#include <QVariantMap>

#include <memory>

namespace tarnvale {

/// The main window and what it shows. Main thread.
class MainWindow : public QQuickWindow {
    Q_OBJECT

public:
    /// The least that its content needs, in logical pixels; more where the desktop's text is larger.
    [[nodiscard]] static QSize leastSize();

    /// `controllers` are the properties that the content requires. All outlive this window.
    MainWindow(QQmlEngine &engine, const QVariantMap &controllers);
    MainWindow(const MainWindow &) = delete;
    MainWindow &operator=(const MainWindow &) = delete;
    ~MainWindow() override;

Q_SIGNALS:
    /// The user has closed it; it is hidden.
    void closed();
    /// It was moved or resized.
    void placeChanged();

protected:
    bool event(QEvent *event) override;

private:
    void fitContent();

    std::unique_ptr<QQuickItem> m_content;
};

} // namespace tarnvale
