#include "commands/automation/SearchProvider.h"

#include "commands/automation/ShortcutQueue.h"
#include "commands/automation/activateResult.h"
#include "commands/automation/applicationId.h"

#include <QDBusMetaType>

namespace tarnvale {

namespace {

/// As GNOME Shell reads it (GNOME developer documentation, "Writing a Search Provider").
QVariantMap metaOf(const SearchResult &result, const ListeningPort &port) {
    return {{QStringLiteral("id"), result.id()},
            {QStringLiteral("name"), titleOf(result, port)},
            {QStringLiteral("description"), descriptionOf(result, port)},
            {QStringLiteral("gicon"), applicationName}};
}

} // namespace

SearchProvider::SearchProvider(QObject *object, const QDBusConnection &bus, const ShortcutTarget &target,
                               ShortcutQueue &queue, SearchActions actions)
    : QDBusAbstractAdaptor(object),
      m_bus(bus),
      m_target(target),
      m_queue(queue),
      m_actions(std::move(actions)) {
    qDBusRegisterMetaType<QList<QVariantMap>>();
}

QStringList SearchProvider::GetInitialResultSet(const QStringList &terms, const QDBusMessage &call) {
    call.setDelayedReply(true);
    m_queue.search([bus = m_bus, terms, call](const std::vector<ListeningPort> &ports) {
        QStringList ids;
        for (const SearchResult &result : searchResults(ports, terms))
            ids.append(result.id());
        bus.send(call.createReply(ids));
    });
    return {};
}

QStringList SearchProvider::GetSubsearchResultSet(const QStringList &, const QStringList &terms,
                                                  const QDBusMessage &call) {
    return GetInitialResultSet(terms, call);
}

QList<QVariantMap> SearchProvider::GetResultMetas(const QStringList &ids) {
    QList<QVariantMap> metas;
    for (const QString &id : ids.first(std::min(ids.size(), qsizetype(mostSearchResults)))) {
        const auto result = SearchResult::parse(id);
        const ListeningPort *port =
            result && m_target.store ? recordOf(*result, m_target.store->ports()) : nullptr;
        if (port)
            metas.append(metaOf(*result, *port));
    }
    return metas;
}

void SearchProvider::ActivateResult(const QString &id, const QStringList &, uint, const QDBusMessage &call) {
    call.setDelayedReply(true);
    const auto result = SearchResult::parse(id);
    activateResult(result, {m_bus, call}, m_queue, m_actions.tell);
}

void SearchProvider::LaunchSearch(const QStringList &, uint) {
    if (m_actions.show)
        m_actions.show();
}

} // namespace tarnvale
