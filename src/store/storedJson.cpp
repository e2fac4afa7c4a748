#include "store/storedJson.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cmath>
#include <functional>
#include <limits>
#include <utility>

namespace tarnvale {

namespace {

using namespace std::chrono;

/// Dates are seconds since 2001-01-01 00:00:00 UTC.
constexpr Instant epoch = sys_days{year{2001} / 1 / 1};

/// Beyond this a date in milliseconds wouldn't fit: some 290,000 years.
constexpr double farthestDate = 9e15;

double toStored(Instant date) {
    return duration<double>(date - epoch).count();
}

std::optional<Instant> dateIn(const QJsonValue &value) {
    const double seconds = value.toDouble();
    if (!value.isDouble() || std::abs(seconds) > farthestDate / 1000)
        return std::nullopt;
    return epoch + milliseconds(std::llround(seconds * 1000));
}

std::optional<std::int64_t> integerIn(const QJsonValue &value) {
    // Of two defaults at least one isn't the value itself.
    const qint64 number = value.toInteger(0);
    return value.isDouble() && number == value.toInteger(1) ? std::optional<std::int64_t>(number)
                                                            : std::nullopt;
}

std::optional<std::string> textIn(const QJsonValue &value) {
    return value.isString() ? std::optional(value.toString().toStdString()) : std::nullopt;
}

std::optional<QUuid> uuidIn(const QJsonValue &value) {
    constexpr int length = 36; // without the braces that QUuid would take as well
    const QUuid id = value.toString().size() == length ? QUuid::fromString(value.toString()) : QUuid();
    return id.isNull() ? std::nullopt : std::optional(id);
}

QString toStored(const QUuid &id) {
    return id.toString(QUuid::WithoutBraces).toUpper();
}

/// The elements of an array, each read by `read`; nothing when it isn't one or an element can't be read.
template<typename Record>
std::optional<std::vector<Record>>
listIn(const QJsonValue &value, const std::function<std::optional<Record>(const QJsonValue &)> &read) {
    if (!value.isArray())
        return std::nullopt;
    std::vector<Record> records;
    for (const QJsonValue element : value.toArray()) {
        auto record = read(element);
        if (!record)
            return std::nullopt;
        records.push_back(std::move(*record));
    }
    return records;
}

/// An optional field: absent, null, or what `read` makes of it. False when it can't be read.
template<typename Field, typename Read>
bool readOptional(const QJsonValue &value, std::optional<Field> &field, const Read &read) {
    if (value.isUndefined() || value.isNull())
        return true;
    field = read(value);
    return field.has_value();
}

std::optional<Pid> pidIn(const QJsonValue &value) {
    const auto number = integerIn(value);
    return number && std::in_range<Pid>(*number) ? std::optional(static_cast<Pid>(*number)) : std::nullopt;
}

std::optional<PortEvent> eventIn(const QJsonValue &value) {
    const auto id = uuidIn(value["id"]);
    const auto date = dateIn(value["date"]);
    const auto port = integerIn(value["port"]);
    const auto name = textIn(value["name"]);
    if (!id || !date || !port || !name || !value["started"].isBool())
        return std::nullopt;
    PortEvent event{.id = *id,
                    .date = *date,
                    .port = *port,
                    .otherPorts = {},
                    .pid = {},
                    .name = *name,
                    .started = value["started"].toBool()};
    const auto integers = [](const QJsonValue &list) { return listIn<std::int64_t>(list, integerIn); };
    if (!readOptional(value["otherPorts"], event.otherPorts, integers) ||
        !readOptional(value["pid"], event.pid, pidIn))
        return std::nullopt;
    return event;
}

QJsonObject toStored(const PortEvent &event) {
    QJsonObject object{{"id", toStored(event.id)},
                       {"date", toStored(event.date)},
                       {"port", qint64(event.port)},
                       {"name", QString::fromStdString(event.name)},
                       {"started", event.started}};
    if (event.otherPorts) {
        QJsonArray ports;
        for (const std::int64_t port : *event.otherPorts)
            ports.append(qint64(port));
        object.insert("otherPorts", ports);
    }
    if (event.pid)
        object.insert("pid", *event.pid);
    return object;
}

std::optional<Stack::Command> commandIn(const QJsonValue &value) {
    const auto args = textIn(value["args"]);
    const auto cwd = textIn(value["cwd"]);
    return args && cwd ? std::optional(Stack::Command{*args, *cwd}) : std::nullopt;
}

std::optional<Stack> stackIn(const QJsonValue &value) {
    const auto id = uuidIn(value["id"]);
    const auto name = textIn(value["name"]);
    auto commands = listIn<Stack::Command>(value["commands"], commandIn);
    if (!id || !name || !commands)
        return std::nullopt;
    return Stack{.id = *id, .name = *name, .commands = std::move(*commands)};
}

QJsonObject toStored(const Stack &stack) {
    QJsonArray commands;
    for (const Stack::Command &command : stack.commands)
        commands.append(QJsonObject{{"args", QString::fromStdString(command.args)},
                                    {"cwd", QString::fromStdString(command.cwd)}});
    return {{"id", toStored(stack.id)}, {"name", QString::fromStdString(stack.name)}, {"commands", commands}};
}

template<typename Record> std::string encode(const std::vector<Record> &records) {
    QJsonArray array;
    for (const Record &record : records)
        array.append(toStored(record));
    QByteArray json = QJsonDocument(array).toJson(QJsonDocument::Compact);
    json.replace('/', "\\/"); // only texts hold any
    return json.toStdString();
}

template<typename Record>
std::optional<std::vector<Record>>
decode(std::string_view json, const std::function<std::optional<Record>(const QJsonValue &)> &read) {
    constexpr std::size_t mostBytes = 64u << 20;
    if (json.size() > mostBytes)
        return std::nullopt;
    const auto size = static_cast<qsizetype>(json.size());
    const QJsonDocument document = QJsonDocument::fromJson(QByteArray::fromRawData(json.data(), size));
    return document.isArray() ? listIn<Record>(document.array(), read) : std::nullopt;
}

} // namespace

std::string encodeEvents(const std::vector<PortEvent> &events) {
    return encode(events);
}

std::optional<std::vector<PortEvent>> decodeEvents(std::string_view json) {
    return decode<PortEvent>(json, eventIn);
}

std::string encodeStacks(const std::vector<Stack> &stacks) {
    return encode(stacks);
}

std::optional<std::vector<Stack>> decodeStacks(std::string_view json) {
    return decode<Stack>(json, stackIn);
}

} // namespace tarnvale
