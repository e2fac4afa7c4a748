#pragma once

#include "presentation/update/UpdateViewController.h"

#include <QObject>

#include <memory>

class QQmlEngine;
class QQuickWindow;

namespace tarnvale {

class UpdateChecker;

/// The window of updates: made when there is something to see, gone a moment after it is closed. With it goes
/// what the checker was about. Main thread.
class UpdateWindow : public QObject {
    Q_OBJECT

public:
    /// `checker` outlives this object. `engine` lives at least until the application is about to quit; the
    /// module must be registered with it.
    UpdateWindow(QQmlEngine &engine, UpdateChecker &checker, QString version);
    UpdateWindow(const UpdateWindow &) = delete;
    UpdateWindow &operator=(const UpdateWindow &) = delete;
    ~UpdateWindow() override;

    /// Opens it, or brings it to the front.
    void show();

    [[nodiscard]] bool isOpen() const;
    /// Null while there is no window.
    [[nodiscard]] QQuickWindow *window() const;

private:
    class Opened;

    void open();
    void dropClosed();

    QQmlEngine &m_engine;
    UpdateChecker &m_checker;
    QString m_version;
    std::unique_ptr<Opened> m_opened;
};

} // namespace tarnvale
