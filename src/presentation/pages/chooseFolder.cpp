#include "presentation/pages/chooseFolder.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QGuiApplication>
#include <QWindow>

namespace tarnvale {

namespace {

QString dialogText(const char *text) {
    return QCoreApplication::translate("NewStackSheet", text);
}

/// Projects tend to lie side by side.
QString &firstFolder() {
    static QString folder = QDir::homePath();
    return folder;
}

std::optional<std::string> chosenFolder(const QFileDialog &dialog) {
    const QStringList chosen = dialog.selectedFiles();
    if (dialog.result() != QDialog::Accepted || chosen.isEmpty())
        return std::nullopt;
    firstFolder() = QFileInfo(chosen.first()).absolutePath();
    return QFile::encodeName(QDir::cleanPath(chosen.first())).toStdString();
}

} // namespace

void chooseProjectFolder(std::function<void(std::optional<std::string>)> onDone) {
    auto *dialog = new QFileDialog; // goes when it is closed
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::Directory);
    dialog->setOption(QFileDialog::ShowDirsOnly);
    dialog->setDirectory(firstFolder());
    dialog->setLabelText(QFileDialog::Accept, dialogText("Choose"));
    dialog->setWindowTitle(
        dialogText("Choose a project folder. Tarnvale looks for package.json, artisan, Procfile and more."));
    dialog->winId(); // makes its window
    dialog->windowHandle()->setTransientParent(QGuiApplication::focusWindow());
    QObject::connect(dialog, &QFileDialog::finished, dialog,
                     [dialog, done = std::move(onDone)] { done(chosenFolder(*dialog)); });
    dialog->open();
}

} // namespace tarnvale
