// Why no QSettings (tried with Qt 6.4): on a full disk it leaves the file cut short. Lines that it doesn't
// understand and comments are dropped, with an error that hides whether the write itself succeeded. A lock
// file left behind by a crash makes it wait for half a minute. A list of one number comes back as a text.

#include "platform/linux/SettingsFile.h"

#include "platform/linux/replaceFile.h"

#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QList>
#include <QStandardPaths>

#include <cassert>

namespace tarnvale {

namespace {

/// Far beyond all that is ever stored; what is larger was not written by us.
constexpr qint64 sizeLimit = 16 << 20;

/// All of `bytes` on one line: printable ASCII but "%" stands for itself.
QByteArray encoded(const std::string &bytes) {
    static const QByteArray plain = " !\"#$&'()*+,/:;<=>?@[\\]^`{|}";
    return "@" + QByteArray::fromStdString(bytes).toPercentEncoding(plain);
}

/// Whether `line` sets `key`.
bool isLineOf(const QByteArray &line, const std::string &key) {
    const auto length = static_cast<qsizetype>(key.size());
    return line.size() > length && line[length] == '=' && line.startsWith(QByteArrayView(key));
}

/// The value of `key` in `content`; the first counts.
std::optional<QByteArray> valueIn(const QByteArray &content, const std::string &key) {
    for (const QByteArray &line : content.split('\n')) {
        if (!isLineOf(line, key))
            continue;
        QByteArray text = line.sliced(static_cast<qsizetype>(key.size()) + 1);
        if (text.endsWith('\r'))
            text.chop(1);
        return text.startsWith('@') ? text : text.trimmed(); // blanks of bytes are their own
    }
    return std::nullopt;
}

/// `content` with one line for `key`, where the first was or at the end; with none, without a value.
QByteArray replaced(const QByteArray &content, const std::string &key,
                    const std::optional<QByteArray> &value) {
    const QByteArray line = value ? QByteArray::fromStdString(key) + "=" + *value : QByteArray();
    bool isWritten = !value;
    QList<QByteArray> lines;
    for (const QByteArray &old : content.split('\n')) {
        if (!isLineOf(old, key))
            lines.append(old);
        else if (!std::exchange(isWritten, true))
            lines.append(line);
    }
    if (lines.last().isEmpty())
        lines.removeLast();
    if (!isWritten)
        lines.append(line);
    return lines.isEmpty() ? QByteArray() : lines.join('\n') + "\n";
}

std::optional<std::int64_t> integerIn(const QJsonValue &value) {
    // A number with a fraction, or too large a one, gives each time what it was asked to give instead.
    if (value.isDouble() && value.toInteger(0) == value.toInteger(1))
        return value.toInteger();
    return std::nullopt;
}

} // namespace

SettingsFile::SettingsFile(const std::string &path) : m_path(QString::fromStdString(path)) {}

std::string SettingsFile::standardPath() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation).toStdString() +
           "/tarnvale/tarnvale.conf";
}

std::optional<std::vector<std::int64_t>> SettingsFile::integers(const std::string &key) const {
    const QJsonDocument json = QJsonDocument::fromJson(value(key).value_or(QByteArray()));
    if (!json.isArray())
        return std::nullopt;
    std::vector<std::int64_t> numbers;
    for (const QJsonValue element : json.array()) {
        const auto number = integerIn(element);
        if (!number)
            return std::nullopt;
        numbers.push_back(*number);
    }
    return numbers;
}

std::optional<std::map<std::string, std::string>> SettingsFile::texts(const std::string &key) const {
    const QJsonDocument json = QJsonDocument::fromJson(value(key).value_or(QByteArray()));
    if (!json.isObject())
        return std::nullopt;
    std::map<std::string, std::string> found;
    const QJsonObject object = json.object();
    for (auto entry = object.begin(); entry != object.end(); ++entry) {
        if (!entry.value().isString())
            return std::nullopt;
        found[entry.key().toStdString()] = entry.value().toString().toStdString();
    }
    return found;
}

std::optional<std::string> SettingsFile::bytes(const std::string &key) const {
    const auto text = value(key);
    if (!text || !text->startsWith('@'))
        return std::nullopt;
    return QByteArray::fromPercentEncoding(text->sliced(1)).toStdString();
}

std::optional<bool> SettingsFile::flag(const std::string &key) const {
    const auto text = value(key);
    if (text == "true")
        return true;
    return text == "false" ? std::optional(false) : std::nullopt;
}

bool SettingsFile::setIntegers(const std::string &key, const std::vector<std::int64_t> &values) {
    QJsonArray array;
    for (const std::int64_t number : values)
        array.append(qint64{number});
    return store(key, QJsonDocument(array).toJson(QJsonDocument::Compact));
}

bool SettingsFile::setTexts(const std::string &key, const std::map<std::string, std::string> &values) {
    QJsonObject object;
    for (const auto &[name, text] : values)
        object.insert(QString::fromStdString(name), QString::fromStdString(text));
    return store(key, QJsonDocument(object).toJson(QJsonDocument::Compact));
}

bool SettingsFile::setBytes(const std::string &key, const std::string &value) {
    return store(key, encoded(value));
}

bool SettingsFile::setFlag(const std::string &key, bool value) {
    return store(key, QByteArray(value ? "true" : "false"));
}

bool SettingsFile::remove(const std::string &key) {
    return store(key, std::nullopt);
}

std::optional<QByteArray> SettingsFile::value(const std::string &key) const {
    const auto content = readRegularFile(m_path, sizeLimit);
    return content ? valueIn(*content, key) : std::nullopt;
}

bool SettingsFile::store(const std::string &key, const std::optional<QByteArray> &value) const {
    assert(!key.empty() && key.find_first_of("=\n") == key.npos);
    const auto before = readRegularFile(m_path, sizeLimit);
    if (!before)
        return false;
    const QByteArray after = replaced(*before, key, value);
    return after == *before || replaceFile(m_path, after).has_value();
}

} // namespace tarnvale
