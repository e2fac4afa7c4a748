#pragma once

#include "platform/LoginItem.h"

#include <QString>
#include <QStringList>

namespace tarnvale {

/// The login item as an entry of the desktop's autostart folders (freedesktop.org, Desktop Application
/// Autostart). Every question looks at the files, so changes made in the desktop's own settings show.
///
/// `requiresApproval` never occurs.
class AutostartLoginItem : public LoginItem {
public:
    struct Places {
        QString userFolder;        ///< where entries are written
        QStringList systemFolders; ///< where others may have put one for all users, best first
        std::string executable;    ///< absolute path of the program that is to start
    };

    explicit AutostartLoginItem(Places places = standardPlaces());

    /// The folders by XDG_CONFIG_HOME and XDG_CONFIG_DIRS; this very program, or the AppImage that it runs
    /// from.
    [[nodiscard]] static Places standardPlaces();

    [[nodiscard]] Status status() const override;
    [[nodiscard]] std::expected<void, std::string> enable() override;

    /// Removes the user's entry; where the system has one of its own, writes one that hides it.
    [[nodiscard]] std::expected<void, std::string> disable() override;

    /// There is no page that all desktops share.
    void openSystemSettings() override {}

private:
    [[nodiscard]] QString userFile() const;
    [[nodiscard]] bool isStartedBySystem() const;

    Places m_places;
};

} // namespace tarnvale
