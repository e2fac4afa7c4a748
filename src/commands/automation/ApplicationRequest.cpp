#include "commands/automation/ApplicationRequest.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

namespace tarnvale {

namespace {

const QString tokenKey = QStringLiteral("activation-token");
const QString startupKey = QStringLiteral("desktop-startup-id");
const QString actionKey = QStringLiteral("action");

/// Tokens go into the environment and to the window system.
QString safeToken(const QString &text) {
    constexpr qsizetype longest = 512;
    const bool isSafe = text.size() <= longest && std::all_of(text.begin(), text.end(), [](QChar character) {
                            return character >= QLatin1Char(' ') && character <= QLatin1Char('~');
                        });
    return isSafe ? text : QString();
}

} // namespace

QString activationTokenIn(const QVariantMap &platformData) {
    for (const QString &key : {tokenKey, startupKey})
        if (QString token = safeToken(platformData.value(key).toString()); !token.isEmpty())
            return token;
    return {};
}

QVariantMap platformDataWith(const QString &token) {
    if (token.isEmpty())
        return {};
    return {{tokenKey, token}, {startupKey, token}};
}

QString activationTokenOfThisStart() {
    return activationTokenIn({{tokenKey, qEnvironmentVariable("XDG_ACTIVATION_TOKEN")},
                              {startupKey, qEnvironmentVariable("DESKTOP_STARTUP_ID")}});
}

QByteArray requestLine(const ApplicationRequest &request) {
    const QJsonObject object{{actionKey, request.action}, {tokenKey, request.activationToken}};
    return QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n';
}

std::optional<ApplicationRequest> parseRequestLine(const QByteArray &line) {
    if (line.size() > longestRequestLine || !line.endsWith('\n'))
        return std::nullopt;
    const QJsonDocument document = QJsonDocument::fromJson(line);
    const QJsonObject object = document.object();
    if (!document.isObject() || !object.value(actionKey).isString() || !object.value(tokenKey).isString())
        return std::nullopt;
    return ApplicationRequest{.action = object.value(actionKey).toString(),
                              .parameters = {},
                              .activationToken = safeToken(object.value(tokenKey).toString())};
}

} // namespace tarnvale
