#include "commands/automation/RunnerService.h"

#include "commands/automation/ShortcutQueue.h"
#include "commands/automation/activateResult.h"
#include "commands/automation/applicationId.h"

#include <QCoreApplication>
#include <QDBusMetaType>
#include <QRegularExpression>

namespace tarnvale {

namespace {

const QString freeAction = QStringLiteral("free");
constexpr qsizetype longestQuery = 400;

QStringList termsOf(const QString &query) {
    static const QRegularExpression blanks(QStringLiteral("\\s+"));
    return query.size() <= longestQuery ? query.split(blanks, Qt::SkipEmptyParts) : QStringList();
}

/// The kinds of KRunner's matches (KRunner, QueryMatch::Type) that are used here.
constexpr int possibleMatch = 30;
constexpr int exactMatch = 100;

RunnerMatch matchOf(const SearchResult &result, const ListeningPort &port, const QStringList &terms) {
    const bool isExact = terms.contains(QString::number(result.port));
    return {.id = result.id(),
            .text = titleOf(result, port),
            .icon = applicationName,
            .type = isExact ? exactMatch : possibleMatch,
            .relevance = isExact ? 1.0 : 0.7,
            .properties = {{QStringLiteral("subtext"), descriptionOf(result, port)},
                           {QStringLiteral("actions"), QStringList{freeAction}}}};
}

QList<RunnerMatch> matchesIn(const std::vector<ListeningPort> &ports, const QStringList &terms) {
    QList<RunnerMatch> matches;
    for (const SearchResult &result : searchResults(ports, terms))
        if (result.kind == SearchResult::Kind::open) // freeing is the match's action
            matches.append(matchOf(result, *recordOf(result, ports), terms));
    return matches;
}

} // namespace

QDBusArgument &operator<<(QDBusArgument &argument, const RunnerAction &action) {
    argument.beginStructure();
    argument << action.id << action.text << action.icon;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, RunnerAction &action) {
    argument.beginStructure();
    argument >> action.id >> action.text >> action.icon;
    argument.endStructure();
    return argument;
}

QDBusArgument &operator<<(QDBusArgument &argument, const RunnerMatch &match) {
    argument.beginStructure();
    argument << match.id << match.text << match.icon << match.type << match.relevance << match.properties;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, RunnerMatch &match) {
    argument.beginStructure();
    argument >> match.id >> match.text >> match.icon >> match.type >> match.relevance >> match.properties;
    argument.endStructure();
    return argument;
}

RunnerService::RunnerService(QObject *object, const QDBusConnection &bus, ShortcutQueue &queue,
                             SearchActions actions)
    : QDBusAbstractAdaptor(object), m_bus(bus), m_queue(queue), m_actions(std::move(actions)) {
    qDBusRegisterMetaType<RunnerAction>();
    qDBusRegisterMetaType<QList<RunnerAction>>();
    qDBusRegisterMetaType<RunnerMatch>();
    qDBusRegisterMetaType<QList<RunnerMatch>>();
}

QList<RunnerAction> RunnerService::Actions() {
    return {{.id = freeAction,
             .text = QCoreApplication::translate("Shortcuts", "Free a Port"),
             .icon = QStringLiteral("process-stop")}};
}

QList<RunnerMatch> RunnerService::Match(const QString &query, const QDBusMessage &call) {
    call.setDelayedReply(true);
    m_queue.search([bus = m_bus, terms = termsOf(query), call](const std::vector<ListeningPort> &ports) {
        bus.send(call.createReply(QVariant::fromValue(matchesIn(ports, terms))));
    });
    return {};
}

void RunnerService::Run(const QString &id, const QString &action, const QDBusMessage &call) {
    call.setDelayedReply(true);
    auto result = SearchResult::parse(id);
    if (result && result->kind != SearchResult::Kind::open)
        result.reset();
    if (result && action == freeAction)
        result->kind = SearchResult::Kind::free;
    else if (!action.isEmpty())
        result.reset();
    activateResult(result, {m_bus, call}, m_queue, m_actions.tell);
}

QVariantMap RunnerService::Config() {
    return {{QStringLiteral("MinLetterCount"), 2}};
}

} // namespace tarnvale
