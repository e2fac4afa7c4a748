#include "app/GuiClipboard.h"

#include <QClipboard>
#include <QGuiApplication>

namespace tarnvale {

void GuiClipboard::setText(const std::string &text) {
    QGuiApplication::clipboard()->setText(QString::fromStdString(text));
}

} // namespace tarnvale
