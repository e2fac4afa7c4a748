#include "commands/hotkey/Shortcut.h"

#include "discovery/text.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <utility>

namespace tarnvale {

namespace {

std::optional<std::uint32_t> numberIn(const QJsonValue &value) {
    // Of two defaults at least one isn't the value itself.
    const qint64 number = value.toInteger(0);
    const bool isInteger = value.isDouble() && number == value.toInteger(1);
    return isInteger && std::in_range<std::uint32_t>(number)
               ? std::optional(static_cast<std::uint32_t>(number))
               : std::nullopt;
}

} // namespace

std::optional<std::string> encodeShortcut(const Shortcut &shortcut) {
    if (repairedUtf8(shortcut.display) != shortcut.display)
        return std::nullopt;
    const QJsonObject object{{"keyCode", qint64(shortcut.keyCode)},
                             {"carbonModifiers", qint64(shortcut.carbonModifiers)},
                             {"display", QString::fromStdString(shortcut.display)}};
    QByteArray json = QJsonDocument(object).toJson(QJsonDocument::Compact);
    json.replace('/', "\\/"); // only the text can hold any
    return json.toStdString();
}

std::optional<Shortcut> decodeShortcut(std::string_view json) {
    constexpr std::size_t mostBytes = 4096;
    if (json.size() > mostBytes)
        return std::nullopt;
    const auto size = static_cast<qsizetype>(json.size());
    const QJsonObject object = QJsonDocument::fromJson(QByteArray::fromRawData(json.data(), size)).object();
    const auto keyCode = numberIn(object["keyCode"]);
    const auto modifiers = numberIn(object["carbonModifiers"]);
    const QJsonValue display = object["display"];
    if (!keyCode || !modifiers || !display.isString())
        return std::nullopt;
    return Shortcut{*keyCode, *modifiers, display.toString().toStdString()};
}

} // namespace tarnvale
