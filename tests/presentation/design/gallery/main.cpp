// Shows all parts of the design, or takes their picture:
//
//   tarnvale-gallery [--dark] [--platform offscreen --screenshot FILE [--scale N]]

#include "presentation/design/Appearance.h"
#include "presentation/design/registerDesign.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>
#include <QTimer>

#include <cstdio>

void qml_register_types_Tarnvale_Gallery(); // NOLINT(readability-identifier-naming): made by the build

namespace {

/// Qt reads the scale before there is a parser.
void takeScale(int argc, char **argv) {
    for (int i = 1; i + 1 < argc; ++i) {
        if (qstrcmp(argv[i], "--scale") == 0)
            qputenv("QT_SCALE_FACTOR", argv[i + 1]);
    }
}

void takePicture(QQuickView &view, const QString &file) {
    if (auto *focused = view.rootObject()->findChild<QQuickItem *>(QStringLiteral("focused")))
        focused->forceActiveFocus(Qt::TabFocusReason);
    const bool isWritten = view.grabWindow().save(file);
    if (!isWritten)
        std::fprintf(stderr, "could not write %s\n", qPrintable(file));
    QCoreApplication::exit(isWritten ? 0 : 1);
}

} // namespace

int main(int argc, char **argv) {
    takeScale(argc, argv);
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    const QApplication application(argc, argv);
    QCommandLineParser parser;
    const QCommandLineOption dark(QStringLiteral("dark"), QStringLiteral("In dark colours."));
    const QCommandLineOption scale(QStringLiteral("scale"), QStringLiteral("By which all is larger."),
                                   QStringLiteral("number"));
    const QCommandLineOption screenshot(QStringLiteral("screenshot"),
                                        QStringLiteral("Write a picture and end."), QStringLiteral("file"));
    parser.addOptions({dark, scale, screenshot});
    parser.addHelpOption();
    parser.process(application);

    using tarnvale::Appearance;
    const bool isPicture = parser.isSet(screenshot);
    Appearance::instance().setOverride(parser.isSet(dark), isPicture ? std::optional(true) : std::nullopt);
    QQuickView view;
    tarnvale::registerDesign(*view.engine());
    qml_register_types_Tarnvale_Gallery();
    view.setInitialProperties({{QStringLiteral("still"), isPicture}});
    view.setResizeMode(QQuickView::SizeViewToRootObject);
    view.setSource(QUrl(QStringLiteral("qrc:/qt/qml/Tarnvale/Gallery/Gallery.qml")));
    if (view.status() != QQuickView::Ready)
        return 1;
    view.show();
    if (isPicture)
        QTimer::singleShot(0, &view, [&] { takePicture(view, parser.value(screenshot)); });
    return QApplication::exec();
}
