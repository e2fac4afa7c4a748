#include "platform/linux/notificationTexts.h"

#include "discovery/text.h"

#include <QCoreApplication>

namespace tarnvale {

namespace {

QString bounded(const std::string &text, std::size_t characters) {
    const std::string repaired = repairedUtf8(text);
    const std::string_view first = firstCharacters(repaired, characters);
    QString result = QString::fromUtf8(first.data(), static_cast<qsizetype>(first.size()));
    result.remove(QChar::Null); // a bus takes no such texts
    return first.size() < repaired.size() ? result + QChar(0x2026) : result;
}

/// The three characters alone that the protocol reserves: not every server knows "&quot;".
QString escaped(QString text) {
    text.replace(QLatin1Char('&'), QLatin1String("&amp;"));
    text.replace(QLatin1Char('<'), QLatin1String("&lt;"));
    return text.replace(QLatin1Char('>'), QLatin1String("&gt;"));
}

} // namespace

QString notificationBody(const Notification &notification, const QStringList &capabilities) {
    constexpr std::size_t longest = 1000;
    const QString text = bounded(notification.body, longest);
    return capabilities.contains(QLatin1String("body-markup")) ? escaped(text) : text;
}

QString notificationTitle(const Notification &notification) {
    constexpr std::size_t longest = 200;
    return bounded(notification.title, longest);
}

QStringList notificationActions(const std::vector<NotificationAction> &buttons,
                                const QStringList &capabilities) {
    if (!capabilities.contains(QLatin1String("actions")))
        return {};
    QStringList actions{QLatin1String(defaultNotificationAction),
                        QCoreApplication::translate("Notifications", "Open Tarnvale")};
    for (const NotificationAction &button : buttons)
        actions << QString::fromStdString(button.id) << QString::fromStdString(button.title);
    return actions;
}

} // namespace tarnvale
