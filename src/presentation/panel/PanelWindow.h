#pragma once

#include "presentation/tray/panelPlacement.h"

#include <QQmlEngine>
#include <QQuickWindow>
#include <QVariantAnimation>

#include <memory>

namespace tarnvale {

class PanelFooterController;
class PortListController;

/// The window of the panel: without a frame, above the others, as large as its content, faded in and out.
///
/// What it shows is made at once and stays. Main thread.
class PanelWindow : public QQuickWindow {
    Q_OBJECT

public:
    /// All outlive this window.
    PanelWindow(QQmlEngine &engine, PortListController &list, PanelFooterController &footer);
    PanelWindow(const PanelWindow &) = delete;
    PanelWindow &operator=(const PanelWindow &) = delete;
    ~PanelWindow() override;

    /// What its content needs now, in logical pixels, after laying it out.
    [[nodiscard]] QSize fittingSize() const;

    /// Puts it there; its size from then on follows the content, with the edge that stays where it is.
    void place(const PanelPlacement &placement, const QRect &visible);

    void fadeIn();
    /// Hides it when the fade is over, unless it was faded in meanwhile.
    void fadeOut();
    [[nodiscard]] bool isClosing() const { return m_isClosing; }

Q_SIGNALS:
    /// The keyboard has gone to another window, which is none of ours.
    void keyboardLost();
    /// Esc where nothing else wants it.
    void cancelled();
    /// The key that the menu of settings shows beside "Quit Tarnvale".
    void quitChosen();

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    void followContent();
    void fadeTo(double opacity, int milliseconds);
    void updateTranslucency();

    std::unique_ptr<QQuickItem> m_content;
    QVariantAnimation m_fade;
    PanelPlacement m_placement;
    bool m_isPlaced = false;
    bool m_isClosing = false;
};

} // namespace tarnvale
