#include "presentation/pages/NewStackController.h"

#include "discovery/text.h"
#include "platform/Clock.h"
#include "platform/background.h"
#include "presentation/plainText.h"
#include "presentation/shared/after.h"
#include "store/PortStore.h"
#include "store/trimmedBlanks.h"

#include <QCoreApplication>

#include <algorithm>
#include <filesystem>
#include <unistd.h>

namespace tarnvale {

using namespace std::chrono_literals;

namespace {

constexpr auto slowReading = 200ms;

QString sheetText(const char *text) {
    return QCoreApplication::translate("NewStackSheet", text);
}

SuggestionRow rowOf(const ProjectDetector::Suggestion &suggestion, bool isTicked) {
    constexpr std::size_t longestCommand = 400; // characters
    return {.id = QString::fromStdString(suggestion.args),
            .args = plainText(firstCharacters(repairedUtf8(suggestion.args), longestCommand)),
            .source = plainText(suggestion.source),
            .isTicked = isTicked};
}

/// The files in a folder can be reached by their names; it need not let itself be listed.
bool isReadableFolder(const std::string &folder) {
    std::error_code error;
    return std::filesystem::is_directory(folder, error) && access(folder.c_str(), X_OK) == 0;
}

} // namespace

QFuture<FolderReading> readProjectFolder(const std::string &folder) {
    return inBackground([folder] {
        FolderReading reading{.isReadable = isReadableFolder(folder)};
        if (reading.isReadable)
            reading.suggestions = ProjectDetector::suggestions(folder);
        return reading;
    });
}

NewStackController::NewStackController(PortStore &store, const Platform &platform, FolderReader reader)
    : m_store(store), m_clock(platform.clock), m_reader(std::move(reader)) {}

QString NewStackController::folder() const {
    return plainText(m_folder);
}

QString NewStackController::heading() const {
    if (!m_suggestions.empty())
        return sheetText("Commands to start");
    if (m_reading == Reading::quick)
        return {};
    return m_reading == Reading::slow ? sheetText("Looking for start commands…")
                                      : sheetText("No start commands found — add your own:");
}

QString NewStackController::problem() const {
    return m_reading == Reading::failed ? sheetText("Tarnvale can’t read this folder.") : QString();
}

void NewStackController::setName(const QString &name) {
    if (std::exchange(m_name, name) != name)
        Q_EMIT nameChanged();
}

void NewStackController::setCustom(const QString &custom) {
    if (std::exchange(m_custom, custom) != custom)
        Q_EMIT customChanged();
}

void NewStackController::open(const std::string &folder) {
    const int opening = ++m_openings;
    m_folder = folder;
    m_suggestions.clear();
    m_known.clear();
    m_selected.clear();
    m_reading = Reading::quick;
    updateRows();
    setName(QString::fromStdString(repairedUtf8(lastPathComponent(folder))));
    setCustom({});
    m_isOpen = true;
    Q_EMIT isOpenChanged();

    whenDone(m_reader(folder), this, [this, opening](const FolderReading &reading) {
        if (opening == m_openings && m_isOpen)
            take(reading);
    });
    after(m_clock, slowReading, this, [this, opening] {
        if (opening != m_openings || m_reading != Reading::quick)
            return;
        m_reading = Reading::slow;
        Q_EMIT suggestionsChanged();
    });
}

/// Commands that the user added while the folder was being read stay behind those that it told.
void NewStackController::take(const FolderReading &reading) {
    m_reading = reading.isReadable ? Reading::done : Reading::failed;
    const auto added = std::exchange(m_suggestions, {});
    m_known.clear();
    for (const auto &suggestion : reading.suggestions)
        addSuggestion(suggestion);
    for (const auto &suggestion : m_suggestions)
        if (suggestion.recommended)
            m_selected.insert(suggestion.args);
    for (const auto &suggestion : added)
        addSuggestion(suggestion);
    updateRows();
}

void NewStackController::addSuggestion(const ProjectDetector::Suggestion &suggestion) {
    if (m_known.insert(suggestion.args).second)
        m_suggestions.push_back(suggestion);
}

void NewStackController::updateRows() {
    std::vector<SuggestionRow> rows;
    rows.reserve(m_suggestions.size());
    for (const auto &suggestion : m_suggestions)
        rows.push_back(rowOf(suggestion, m_selected.contains(suggestion.args)));
    m_rows.setRows(std::move(rows));
    Q_EMIT suggestionsChanged();
}

void NewStackController::setTicked(const QString &id, bool isTicked) {
    const std::string args = id.toStdString();
    if (!m_known.contains(args))
        return;
    if (isTicked)
        m_selected.insert(args);
    else
        m_selected.erase(args);
    updateRows();
}

void NewStackController::addCustom() {
    const std::string args = trimmedBlanks(m_custom.toStdString());
    if (args.empty() || !m_isOpen)
        return;
    addSuggestion({.args = args, .source = sheetText("Custom").toStdString(), .recommended = true});
    m_selected.insert(args);
    setCustom({});
    updateRows();
    const auto row = std::find_if(m_suggestions.begin(), m_suggestions.end(),
                                  [&](const auto &suggestion) { return suggestion.args == args; });
    Q_EMIT customAdded(static_cast<int>(row - m_suggestions.begin()));
}

void NewStackController::create() {
    if (!m_isOpen || !canCreate())
        return;
    std::vector<Stack::Command> commands;
    for (const auto &suggestion : m_suggestions)
        if (m_selected.contains(suggestion.args))
            commands.push_back({suggestion.args, m_folder});
    m_store.saveStack(m_name.toStdString(), std::move(commands));
    close();
}

void NewStackController::cancel() {
    close();
}

void NewStackController::close() {
    if (std::exchange(m_isOpen, false))
        Q_EMIT isOpenChanged();
}

const std::vector<ListRole<SuggestionRow>> &SuggestionRow::roles() {
    static const std::vector<ListRole<SuggestionRow>> all{
        {"commandId", [](const SuggestionRow &row) -> QVariant { return row.id; }},
        {"args", [](const SuggestionRow &row) -> QVariant { return row.args; }},
        {"source", [](const SuggestionRow &row) -> QVariant { return row.source; }},
        {"isTicked", [](const SuggestionRow &row) -> QVariant { return row.isTicked; }},
    };
    return all;
}

} // namespace tarnvale
