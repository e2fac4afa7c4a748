#pragma once

#include "platform/Desktop.h"

#include <QDBusConnection>
#include <QObject>

#include <map>

namespace tarnvale {

/// The desktop by the means that all of them share: `xdg-open`, the session bus, and X11 where there is a
/// server. Programs are started on background threads.
class LinuxDesktop : public Desktop {
public:
    struct Setup {
        QDBusConnection bus = QDBusConnection::sessionBus();
        std::string display; ///< of the X server; empty for the one that `DISPLAY` names
        std::string locale;  ///< of the user's messages, as in "de_DE.UTF-8"; empty for the environment's
    };

    LinuxDesktop();
    explicit LinuxDesktop(Setup setup);

    /// Nothing when `url` has no scheme: then it would be taken for a file, or for an option.
    void openUrl(const std::string &url) override;

    /// Asks the file manager; where none answers, the folder is opened. Nothing when `path` isn't absolute.
    void reveal(const std::string &path) override;

    /// Nothing unless `path` is absolute and that of a regular file.
    void openLog(const std::string &path) override;

    /// A window of the process tree through X11; else the application's own D-Bus name. Asks the X server and
    /// the bus, and waits half a second for the latter at most.
    [[nodiscard]] bool focusApplication(const std::string &hostApp, Pid pid) override;

    /// The `Name` in the desktop file, in the user's language; the name of the file without that.
    [[nodiscard]] std::string applicationName(const std::string &hostApp) const override;

private:
    [[nodiscard]] bool activateByName(const std::string &hostApp);

    Setup m_setup;
    mutable std::map<std::string, std::string> m_names; ///< those that were found, by `hostApp`
    QObject m_context;                                  ///< ends what still waits for an answer
};

} // namespace tarnvale
