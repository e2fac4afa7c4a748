#pragma once

#include <QStringView>
#include <QUrl>

#include <optional>
#include <string>

namespace tarnvale {

/// An absolute HTTPS address of a host, without a user's name or password.
[[nodiscard]] inline bool isHttps(const QUrl &url) {
    return url.isValid() && url.scheme() == QLatin1String("https") && !url.host().isEmpty() &&
           url.userInfo().isEmpty();
}

/// `text` as such an address, fully encoded and of at most 2048 characters; nothing when it is none.
[[nodiscard]] inline std::optional<std::string> httpsAddress(QStringView text) {
    constexpr qsizetype longest = 2048;
    if (text.size() > longest)
        return std::nullopt;
    const QUrl url(text.toString(), QUrl::StrictMode);
    const std::string encoded = url.toEncoded(QUrl::FullyEncoded).toStdString();
    return isHttps(url) && encoded.size() <= longest ? std::optional(encoded) : std::nullopt;
}

} // namespace tarnvale
