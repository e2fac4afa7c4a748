#pragma once

#include <QWebEnginePage>

namespace tarnvale {

/// A page that nobody sees. It goes to no remote address, opens nothing, asks nobody and makes no sound.
class HiddenPage : public QWebEnginePage {
public:
    explicit HiddenPage(QWebEngineProfile *profile, QObject *parent = nullptr);

protected:
    bool acceptNavigationRequest(const QUrl &url, NavigationType type, bool isMainFrame) override;
    QWebEnginePage *createWindow(WebWindowType type) override;
    QStringList chooseFiles(FileSelectionMode mode, const QStringList &oldFiles,
                            const QStringList &acceptedMimeTypes) override;
    void javaScriptAlert(const QUrl &origin, const QString &text) override;
    bool javaScriptConfirm(const QUrl &origin, const QString &text) override;
    bool javaScriptPrompt(const QUrl &origin, const QString &text, const QString &proposal,
                          QString *result) override;
    void javaScriptConsoleMessage(JavaScriptConsoleMessageLevel level, const QString &message, int line,
                                  const QString &source) override;

private:
    void refuseRequests();
};

} // namespace tarnvale
