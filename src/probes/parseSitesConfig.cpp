#include "probes/parseSitesConfig.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace tarnvale {

namespace {

std::optional<std::vector<std::string>> texts(const QJsonValue &value) {
    if (!value.isArray())
        return std::nullopt;
    std::vector<std::string> result;
    for (const QJsonValue item : value.toArray()) {
        if (!item.isString())
            return std::nullopt;
        result.push_back(item.toString().toStdString());
    }
    return result;
}

} // namespace

// Sample: {"tld": "test", "loopback": "127.0.0.1", "paths": ["/home/me/Sites"]}
std::optional<SitesConfig> parseSitesConfig(std::string_view json, TldKeys keys) {
    const QByteArray bytes = QByteArray::fromRawData(json.data(), static_cast<qsizetype>(json.size()));
    const QJsonObject config = QJsonDocument::fromJson(bytes).object();
    const auto paths = texts(config.value(QLatin1String("paths")));
    QJsonValue tld = config.value(QLatin1String("tld"));
    if (keys == TldKeys::tldOrDomain && tld.isUndefined())
        tld = config.value(QLatin1String("domain"));
    if (!paths || !tld.isString())
        return std::nullopt;
    return SitesConfig{*paths, tld.toString().toStdString()};
}

} // namespace tarnvale
