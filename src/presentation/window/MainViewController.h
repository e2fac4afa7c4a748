#pragma once

#include "presentation/shared/ViewUpdates.h"
#include "presentation/window/PagePictures.h"
#include "presentation/window/PortsController.h"
#include "presentation/window/SidebarRow.h"
#include "probes/LocalSites.h"

#include <QObject>
#include <QString>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

#include <functional>
#include <vector>

namespace tarnvale {

class GlobalHotKey;

/// What the window can ask of the application around it. What is left out isn't offered.
struct WindowActions {
    std::function<void()> openSettings;
    std::function<void()> checkForUpdates;
    std::function<void()> copyInstallCommand;
    std::function<void()> quit;
};

/// What of the window doesn't belong to one page: which page is shown, the search, the sidebar, the palette,
/// the welcome and the error. It lives as long as the program, so that a window that is shown again is as it
/// was left. Main thread.
///
/// While the window isn't visible nothing is worked out.
class MainViewController : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("belongs to the window")

    Q_PROPERTY(QAbstractItemModel *sidebar READ sidebar CONSTANT)
    Q_PROPERTY(QString selection READ selection NOTIFY selectionChanged)
    Q_PROPERTY(int sidebarIndex READ sidebarIndex NOTIFY sidebarIndexChanged)
    Q_PROPERTY(bool listsPorts READ listsPorts NOTIFY selectionChanged)
    Q_PROPERTY(QString title READ title NOTIFY selectionChanged)
    Q_PROPERTY(QString subtitle READ subtitle NOTIFY rowsChanged)
    Q_PROPERTY(QString query READ query WRITE setQuery NOTIFY queryChanged)
    Q_PROPERTY(bool isRefreshing READ isRefreshing NOTIFY isRefreshingChanged)
    Q_PROPERTY(bool isPaletteShown READ isPaletteShown NOTIFY isPaletteShownChanged)
    Q_PROPERTY(bool isSidebarShown READ isSidebarShown NOTIFY isSidebarShownChanged)
    Q_PROPERTY(bool isWelcomeShown READ isWelcomeShown NOTIFY isWelcomeShownChanged)
    Q_PROPERTY(QString error READ error NOTIFY errorChanged)
    Q_PROPERTY(QStringList hotKeyCaps READ hotKeyCaps NOTIFY hotKeyChanged)
    Q_PROPERTY(tarnvale::PortsController *ports READ ports CONSTANT)

public:
    /// All outlive this object.
    MainViewController(PortStore &store, const Platform &platform, GlobalHotKey &hotKey,
                       PagePictures &pictures, WindowActions actions);

    [[nodiscard]] QAbstractItemModel *sidebar() { return &m_sidebar; }
    [[nodiscard]] QString selection() const { return key(m_selection); } ///< a `SidebarItem`'s key
    [[nodiscard]] SidebarItem page() const { return m_selection; }
    [[nodiscard]] int sidebarIndex() const; ///< of the page's row; -1 when it has none
    [[nodiscard]] bool listsPorts() const;
    [[nodiscard]] QString title() const { return label(m_selection); }
    [[nodiscard]] QString subtitle() const;
    [[nodiscard]] const QString &query() const { return m_query; }
    [[nodiscard]] bool isRefreshing() const { return m_isRefreshing; }
    [[nodiscard]] bool isPaletteShown() const { return m_isPaletteShown; }
    [[nodiscard]] bool isSidebarShown() const { return m_isSidebarShown; }
    [[nodiscard]] bool isWelcomeShown() const { return m_isWelcomeShown; }
    [[nodiscard]] QString error() const;
    [[nodiscard]] QStringList hotKeyCaps() const;
    [[nodiscard]] PortsController *ports() { return &m_ports; }

    /// The rows of all visible ports that the search leaves.
    [[nodiscard]] std::vector<RowSection> groups() const;
    /// The rows of all visible ports, whatever is searched for.
    [[nodiscard]] std::vector<RowEntry> allRows() const;
    [[nodiscard]] const std::vector<LocalSites::Site> &sites() const { return m_sites; }

    void setQuery(const QString &query);
    void select(SidebarItem item);
    /// Selects the port on the page of all ports.
    void showPort(const ListeningPort &port);
    /// Brings everything up to date with the store.
    void prepare() { m_updates.update(); }

    /// Goes to the page of that `SidebarItem`'s key.
    Q_INVOKABLE void navigate(const QString &itemKey);
    Q_INVOKABLE void toggleSidebar();
    Q_INVOKABLE void togglePalette();
    Q_INVOKABLE void closePalette();
    void showWelcome();
    Q_INVOKABLE void closeWelcome();
    /// One scan; nothing while the last one that was asked for here is under way.
    Q_INVOKABLE void refresh();
    Q_INVOKABLE void openSettings();
    Q_INVOKABLE void quit();
    Q_INVOKABLE void dismissError();
    /// Asks for the menu "More" at a place of the screen, see `menuReady`.
    Q_INVOKABLE void requestMenu(const QPointF &place);
    Q_INVOKABLE void closeWindow();

Q_SIGNALS:
    void selectionChanged();
    void sidebarIndexChanged();
    void queryChanged();
    void rowsChanged();
    void isRefreshingChanged();
    void isPaletteShownChanged();
    void isSidebarShownChanged();
    void isWelcomeShownChanged();
    void errorChanged();
    void hotKeyChanged();
    void sitesChanged();
    void menuReady(const QPointF &place, const std::vector<tarnvale::MenuEntry> &entries);
    void closeRequested();

private:
    void update();
    void handleVisibility();
    void readSites();
    void fadeError();
    void announcePage();
    void showRows();
    void updateSidebar(const std::vector<RowSection> &groups);
    [[nodiscard]] std::vector<MenuEntry> menu();
    void setRefreshing(bool isRefreshing);
    QCoro::Task<> refreshAndTurn();

    PortStore &m_store;
    Platform m_platform;
    GlobalHotKey &m_hotKey;
    PagePictures &m_pictures;
    WindowActions m_actions;
    PortsController m_ports;
    KeyedListModel<SidebarRow> m_sidebar;
    std::vector<GroupedPort> m_visible;
    std::vector<LocalSites::Site> m_sites;
    SidebarItem m_selection = SidebarItem::overview;
    QString m_query;
    int m_rowCount = 0;
    int m_errorShowings = 0;
    bool m_isRefreshing = false;
    bool m_isPaletteShown = false;
    bool m_isSidebarShown = true;
    bool m_isWelcomeShown = false;
    bool m_hasReadSites = false;
    ViewUpdates m_updates;
};

} // namespace tarnvale
