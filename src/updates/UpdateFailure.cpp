#include "updates/UpdateFailure.h"

#include <QCoreApplication>

namespace tarnvale {

namespace {

QString tr(const char *text) {
    return QCoreApplication::translate("Updates", text);
}

} // namespace

QString sentence(const UpdateFailure &failure) {
    switch (failure.kind) {
    case UpdateFailure::Kind::cancelled:
        return tr("The update was cancelled.");
    case UpdateFailure::Kind::unreachable:
        return tr("The update server can't be reached.");
    case UpdateFailure::Kind::insecure:
        return tr("The connection to the update server isn't secure.");
    case UpdateFailure::Kind::badAnswer:
        return tr("The update server answered with an error.");
    case UpdateFailure::Kind::timedOut:
        return tr("The update server takes too long to answer.");
    case UpdateFailure::Kind::tooLarge:
        return tr("The update server sent too much.");
    case UpdateFailure::Kind::cutShort:
        return tr("The update server's answer was cut short.");
    case UpdateFailure::Kind::cannotSave:
        return tr("The download couldn't be saved: %1").arg(failure.detail);
    case UpdateFailure::Kind::noRoom:
        return tr("There isn't enough room for the download on the disk.");
    case UpdateFailure::Kind::badFeed:
        return tr("The list of updates couldn't be read.");
    case UpdateFailure::Kind::badSignature:
        return tr("The download isn't signed by Tarnvale's maker, so it was deleted.");
    case UpdateFailure::Kind::changed:
        return tr("The downloaded file was moved or changed. Download it again.");
    }
    return {};
}

} // namespace tarnvale
