#include "platform/errorText.h"

#include "discovery/text.h"

#include <QString>

#include <cstring>

namespace tarnvale {

std::string errorText(int error) {
    return QString::fromLocal8Bit(std::strerror(error)).toStdString();
}

std::string errorText(const std::string &subject, int error) {
    return repairedUtf8(subject) + ": " + errorText(error);
}

} // namespace tarnvale
