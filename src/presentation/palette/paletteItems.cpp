#include "presentation/palette/paletteItems.h"

#include "presentation/plainText.h"
#include "presentation/portTexts.h"

#include <QCoreApplication>

namespace tarnvale {

namespace {

using Actions = std::shared_ptr<const PaletteActions>;
using PortAction = std::function<void(const ListeningPort &)> PaletteActions::*;

QString text(const char *source) {
    return QCoreApplication::translate("CommandPalette", source);
}

const QString secondary = QStringLiteral("secondary");
const QString orange = QStringLiteral("orange");
const QString red = QStringLiteral("red");

/// Adds items to a list.
class PaletteList {
public:
    explicit PaletteList(Actions actions) : m_actions(std::move(actions)) {}

    void addPort(const RowEntry &row);
    void addStack(const Stack &stack);
    void addPage(SidebarItem page, const char *name);
    void addAlways(bool showAll);

    std::vector<PaletteItem> items;

private:
    /// What the items of one port share.
    struct PortFace {
        Shared<ListeningPort> port;
        QString key; ///< "{pid}:{port}"
        QString name;
        QString number; ///< "Port 3000"
    };

    void add(PaletteItem item);
    [[nodiscard]] std::function<void()> runOn(const PortFace &face, PortAction action) const;
    void addOpen(const PortFace &face);
    void addCopy(const PortFace &face, bool isWeb);
    void addRestart(const PortFace &face);
    void addStop(const PortFace &face);

    Actions m_actions;
};

void PaletteList::add(PaletteItem item) {
    item.searched = forPaletteSearch(item.title + QLatin1Char(' ') + item.subtitle);
    items.push_back(std::move(item));
}

std::function<void()> PaletteList::runOn(const PortFace &face, PortAction action) const {
    return [actions = m_actions, port = face.port, action] { ((*actions).*action)(*port); };
}

void PaletteList::addOpen(const PortFace &face) {
    add({.id = QStringLiteral("open-") + face.key,
         .title = text("Open %1").arg(face.name),
         .subtitle = QStringLiteral("localhost:%1").arg(face.port->port),
         .symbol = QStringLiteral("safari"),
         .tint = QStringLiteral("blue"),
         .run = runOn(face, &PaletteActions::open)});
}

void PaletteList::addCopy(const PortFace &face, bool isWeb) {
    add({.id = QStringLiteral("copy-") + face.key,
         .title = (isWeb ? text("Copy URL of %1") : text("Copy Address of %1")).arg(face.name),
         .subtitle = face.number,
         .symbol = QStringLiteral("doc.on.doc"),
         .tint = secondary,
         .run = runOn(face, &PaletteActions::copy)});
}

/// A plain process can be restarted when it is known what it is and how it was started.
void PaletteList::addRestart(const PortFace &face) {
    const ListeningPort &port = *face.port;
    QString title;
    if (port.containerName())
        title = text("Restart Container %1");
    else if (port.service)
        title = text("Restart Service %1");
    else if (port.hasProject() && port.args)
        title = text("Restart %1");
    else
        return;
    add({.id = QStringLiteral("restart-") + face.key,
         .title = title.arg(face.name),
         .subtitle = face.number,
         .symbol = QStringLiteral("arrow.clockwise"),
         .tint = orange,
         .run = runOn(face, &PaletteActions::restart)});
}

void PaletteList::addStop(const PortFace &face) {
    const bool isManaged = face.port->service || face.port->containerName();
    add({.id = QStringLiteral("kill-") + face.key,
         .title = (isManaged ? text("Stop %1") : text("Kill %1")).arg(face.name),
         .subtitle = face.number,
         .symbol = QStringLiteral("xmark.octagon"),
         .tint = red,
         .isDestructive = true,
         .run = runOn(face, &PaletteActions::stop)});
}

void PaletteList::addPort(const RowEntry &row) {
    const PortFace face{.port = row.port,
                        .key = QString::fromStdString(row.id()),
                        .name = portTitleAndSubtitle(row.port, {}).title,
                        .number = text("Port %1").arg(row.port->port)};
    if (row.isWeb)
        addOpen(face);
    add({.id = QStringLiteral("show-") + face.key,
         .title = text("Show %1").arg(face.name),
         .subtitle = face.number,
         .symbol = QStringLiteral("sidebar.right"),
         .tint = secondary,
         .run = runOn(face, &PaletteActions::show)});
    addCopy(face, row.isWeb);
    addRestart(face);
    addStop(face);
}

void PaletteList::addStack(const Stack &stack) {
    add({.id = QStringLiteral("stack-") + stack.id.toString(QUuid::WithoutBraces),
         .title = text("Start %1").arg(plainText(stack.name)),
         .subtitle = text("Stack"),
         .symbol = QStringLiteral("play.fill"),
         .tint = QStringLiteral("purple"),
         .run = [actions = m_actions, stack] { actions->startStack(stack); }});
}

void PaletteList::addPage(SidebarItem page, const char *name) {
    add({.id = QStringLiteral("go-") + QLatin1String(name),
         .title = text("Go to %1").arg(label(page)),
         .subtitle = text("Page"),
         .symbol = symbol(page),
         .tint = secondary,
         .run = [actions = m_actions, page] { actions->navigate(page); }});
}

void PaletteList::addAlways(bool showAll) {
    add({.id = QStringLiteral("refresh"),
         .title = text("Refresh Ports"),
         .subtitle = text("⌘R"),
         .symbol = QStringLiteral("arrow.clockwise"),
         .tint = secondary,
         .run = [actions = m_actions] { actions->refresh(); }});
    add({.id = QStringLiteral("system"),
         .title = showAll ? text("Hide System Processes") : text("Show System Processes"),
         .subtitle = text("Filter"),
         .symbol = QStringLiteral("gearshape.2"),
         .tint = secondary,
         .run = [actions = m_actions] { actions->flipShowAll(); }});
}

} // namespace

std::vector<PaletteItem> paletteItems(const PaletteContents &contents,
                                      const std::shared_ptr<const PaletteActions> &actions) {
    constexpr std::size_t mostOfOnePort = 5;
    constexpr std::size_t pagesAndRest = 7;
    PaletteList list(actions);
    list.items.reserve(mostOfOnePort * contents.rows.size() + contents.stacks.size() + pagesAndRest);
    for (const RowEntry &row : contents.rows)
        list.addPort(row);
    for (const Stack &stack : contents.stacks)
        list.addStack(stack);
    list.addPage(SidebarItem::overview, "Overview");
    list.addPage(SidebarItem::allPorts, "All Ports");
    list.addPage(SidebarItem::watched, "Watched");
    list.addPage(SidebarItem::stacks, "Stacks");
    list.addPage(SidebarItem::activity, "Activity");
    list.addAlways(contents.showAll);
    return std::move(list.items);
}

} // namespace tarnvale
