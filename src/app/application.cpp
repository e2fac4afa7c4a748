#include "app/application.h"

#include "app/AppDelegate.h"
#include "app/FeedUpdateController.h"
#include "app/startOptions.h"
#include "commands/automation/SingleInstance.h"
#include "discovery/text.h"
#include "presentation/shared/installWords.h"

#include <QApplication>
#include <QDBusConnection>
#include <QIcon>
#include <QLoggingCategory>
#include <QQuickWindow>
#include <QSGRendererInterface>

#include <cstdio>
#include <cstdlib>
#include <sysexits.h>
#include <unistd.h>

namespace tarnvale {

namespace {

void report(const QString &text) {
    std::fprintf(stderr, "tarnvale: %s\n", qPrintable(text));
}

const char *const withoutDisplay = "'tarnctl help' lists what works without";

/// What the environment says of the display.
QString displayWords() {
    QStringList words;
    for (const char *name : {"WAYLAND_DISPLAY", "DISPLAY", "QT_QPA_PLATFORM"})
        if (!qEnvironmentVariableIsEmpty(name))
            words += QStringLiteral("%1=%2").arg(QLatin1String(name), qEnvironmentVariable(name));
    return QString::fromStdString(printable(words.join(QStringLiteral(", ")).toStdString()));
}

/// Qt ends a program that finds no display by abort(), with advice for its developers.
void handleMessage(QtMsgType type, const QMessageLogContext &context, const QString &message) {
    if (type == QtFatalMsg) {
        if (message.contains(QStringLiteral("platform plugin"))) {
            report(QStringLiteral("the display can't be used (%1); %2")
                       .arg(displayWords(), QLatin1String(withoutDisplay)));
            _exit(EX_UNAVAILABLE);
        }
        report(message.section(QLatin1Char('\n'), 0, 0));
        if (QCoreApplication::instance() == nullptr)
            _exit(EX_UNAVAILABLE);
        std::abort();
    }
    std::fprintf(stderr, "%s\n", qPrintable(qFormatLogMessage(type, context, message)));
}

void nameApplication() {
    QCoreApplication::setApplicationName(QStringLiteral("tarnvale"));
    QCoreApplication::setApplicationVersion(QString::fromStdString(bundleInformation().version));
    QGuiApplication::setApplicationDisplayName(QStringLiteral("Tarnvale"));
    QGuiApplication::setDesktopFileName(QStringLiteral("dev.tarnvale.Tarnvale"));
    QGuiApplication::setQuitOnLastWindowClosed(false);
}

int run(int argc, char **argv) {
    qInstallMessageHandler(handleMessage);
    if (displayWords().isEmpty()) {
        report(
            QStringLiteral("there is no display to show anything on; %1").arg(QLatin1String(withoutDisplay)));
        return EX_UNAVAILABLE;
    }
    // A list and a few symbols need no GPU, and its driver would take more memory than all the rest.
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    nameApplication();
    QLoggingCategory::setFilterRules(QStringLiteral("hotkey.info=false")); // QT_LOGGING_RULES may want them
    QApplication application(argc, argv);
    QGuiApplication::setWindowIcon(
        QIcon(QStringLiteral(":/icons/dev.tarnvale.Tarnvale.svg"))); // wherever it runs from
    installWords();
    const auto options = parseStartOptions(QCoreApplication::arguments().mid(1));
    if (!options) {
        report(options.error());
        return EX_USAGE;
    }

    const QDBusConnection bus = QDBusConnection::sessionBus();
    AppDelegate delegate(bus, makeFeedUpdateController);
    SingleInstance instance(delegate.automation().application(), bus);
    const ApplicationRequest request{
        .action = options->action, .parameters = {}, .activationToken = activationTokenOfThisStart()};
    if (const auto status = instance.start(options->isService ? std::nullopt : std::optional(request)))
        return *status;
    if (options->isService)
        delegate.serve();
    else
        delegate.finishLaunching(request.action.isEmpty() ? AppDelegate::Opening::window
                                                          : AppDelegate::Opening::nothing);
    if (!options->isService && !request.action.isEmpty()) // nobody else was there to do it
        delegate.automation().application().perform(request, [](const ApplicationService::Outcome &) {});
    return QApplication::exec();
}

} // namespace

} // namespace tarnvale

int tarnvaleApplication(int argc, char **argv) {
    return tarnvale::run(argc, argv);
}
