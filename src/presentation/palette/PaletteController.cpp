#include "presentation/palette/PaletteController.h"

#include "platform/Clock.h"
#include "presentation/palette/filteredItems.h"
#include "presentation/shared/after.h"
#include "store/PortStore.h"

#include <algorithm>

namespace tarnvale {

using namespace std::chrono_literals;

namespace {

constexpr auto longestFade = 1s; // of a palette that closes

std::shared_ptr<const PaletteActions> actionsOn(PortStore &store, const PaletteInputs &inputs) {
    PaletteActions actions;
    actions.open = [&store](const ListeningPort &port) { store.openInBrowser(port); };
    actions.show = inputs.showPort;
    actions.copy = [&store](const ListeningPort &port) { store.copyURL(port); };
    actions.restart = [&store](const ListeningPort &port) { store.restart(port); };
    actions.stop = [&store](const ListeningPort &port) { store.stop(port); };
    actions.startStack = [&store](const Stack &stack) { store.startStack(stack); };
    actions.navigate = inputs.navigate;
    actions.refresh = [&store] { store.refresh(); };
    actions.flipShowAll = [&store] { store.setShowAll(!store.showAll()); };
    return std::make_shared<const PaletteActions>(std::move(actions));
}

} // namespace

PaletteController::PaletteController(PortStore &store, const Platform &platform, PaletteInputs inputs)
    : m_store(store),
      m_platform(platform),
      m_inputs(std::move(inputs)),
      m_actions(actionsOn(store, m_inputs)) {
    for (const auto signal : {&PortStore::portsChanged, &PortStore::healthChanged, &PortStore::stacksChanged,
                              &PortStore::showAllChanged})
        connect(&store, signal, this, &PaletteController::scheduleRebuild);
    for (const auto signal : {&PaletteController::rowsChanged, &PaletteController::highlightedChanged,
                              &PaletteController::armedChanged})
        connect(this, signal, this, &PaletteController::spokenChanged);
}

/// What a palette that fades away still shows is dropped later.
void PaletteController::setShown(bool isShown) {
    if (std::exchange(m_isShown, isShown) == isShown)
        return;
    m_contents = {};
    m_items.clear();
    m_found.clear();
    if (!isShown) {
        after(m_platform.clock, longestFade, this, [this] {
            if (!m_isShown)
                filter();
        });
        return;
    }
    setArmed({});
    setHighlighted(0);
    if (!std::exchange(m_query, QString()).isEmpty())
        Q_EMIT queryChanged();
    rebuild();
}

void PaletteController::scheduleRebuild() {
    if (!m_isShown || std::exchange(m_isRebuildDue, true))
        return;
    const auto due = [this] {
        m_isRebuildDue = false;
        if (m_isShown)
            rebuild();
    };
    QMetaObject::invokeMethod(this, due, Qt::QueuedConnection);
}

void PaletteController::rebuild() {
    PaletteContents contents{
        .rows = m_inputs.rows(), .stacks = m_store.stacks(), .showAll = m_store.showAll()};
    if (!m_items.empty() && contents == m_contents)
        return;
    m_contents = std::move(contents);
    m_items = paletteItems(m_contents, m_actions);
    filter();
}

void PaletteController::filter() {
    m_found = filteredItems(m_items, m_query);
    std::vector<PaletteRow> rows;
    rows.reserve(m_found.size());
    for (const std::size_t place : m_found)
        rows.push_back(paletteRow(m_items[place]));
    m_model.setRows(std::move(rows));
    Q_EMIT rowsChanged();
}

const PaletteItem *PaletteController::item(int row) const {
    const auto place = static_cast<std::size_t>(row);
    return row < 0 || place >= m_found.size() ? nullptr : &m_items[m_found[place]];
}

QString PaletteController::spoken() const {
    const PaletteItem *const shown = item(m_highlighted);
    if (shown == nullptr)
        return {};
    return shown->title + QStringLiteral(", ") +
           (m_armed == shown->id ? confirmationText(shown->title) : shown->subtitle);
}

void PaletteController::setHighlighted(int row) {
    if (std::exchange(m_highlighted, row) != row)
        Q_EMIT highlightedChanged();
}

void PaletteController::setArmed(const QString &itemId) {
    if (std::exchange(m_armed, itemId) != itemId)
        Q_EMIT armedChanged();
}

void PaletteController::setQuery(const QString &query) {
    if (!m_isShown || m_query == query)
        return;
    m_query = query;
    setArmed({});
    setHighlighted(0);
    filter();
    Q_EMIT queryChanged();
}

bool PaletteController::move(int step) {
    if (m_found.empty())
        return false;
    setArmed({});
    setHighlighted(std::clamp(m_highlighted + step, 0, static_cast<int>(m_found.size()) - 1));
    return true;
}

void PaletteController::activate() {
    const PaletteItem *const chosen = item(m_highlighted);
    if (chosen == nullptr)
        return;
    if (chosen->isDestructive && m_armed != chosen->id) {
        setArmed(chosen->id);
        return;
    }
    const std::function<void()> run = chosen->run; // closing drops the items, and may end this object
    close();
    run();
}

void PaletteController::click(const QString &itemId) {
    for (std::size_t row = 0; row < m_found.size(); ++row)
        if (m_items[m_found[row]].id == itemId) {
            setHighlighted(static_cast<int>(row));
            activate();
            return;
        }
}

void PaletteController::close() {
    const std::function<void()> close = m_inputs.close;
    close();
}

bool PaletteController::handleKey(int key, int modifiers, bool isRepeat) {
    const auto all = Qt::KeyboardModifiers::fromInt(static_cast<unsigned>(modifiers));
    if (all & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier))
        return false;
    switch (key) {
    case Qt::Key_Down:
        return move(1);
    case Qt::Key_Up:
        return move(-1);
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (!isRepeat)
            activate();
        return true;
    case Qt::Key_Escape:
        close();
        return true;
    case Qt::Key_Tab: // there is nothing else to go to
    case Qt::Key_Backtab:
        return true;
    default:
        return false;
    }
}

} // namespace tarnvale
