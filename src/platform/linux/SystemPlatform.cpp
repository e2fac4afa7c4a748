#include "platform/SystemPlatform.h"

#include "discovery/Machine.h"
#include "platform/Clock.h"
#include "platform/ProcessControl.h"
#include "platform/linux/AutostartLoginItem.h"
#include "platform/linux/DesktopNotifications.h"
#include "platform/linux/HelperPreviewCapturer.h"
#include "platform/linux/LinuxDesktop.h"
#include "platform/linux/SettingsFile.h"
#include "platform/linux/ShellLauncher.h"
#include "platform/linux/SystemTools.h"

namespace tarnvale {

struct SystemPlatform::Parts {
    Clipboard &clipboard;
    SystemClock clock = {};
    std::unique_ptr<Machine> machine = makeDefaultMachine();
    SystemProcessControl processes = {};
    SettingsFile settings = SettingsFile();
    DesktopNotifications notifications = DesktopNotifications();
    ShellLauncher launcher = ShellLauncher();
    SystemTools tools = {};
    LinuxDesktop desktop = {};
    AutostartLoginItem loginItem = AutostartLoginItem();
    HelperPreviewCapturer previewCapturer = HelperPreviewCapturer();
};

SystemPlatform::SystemPlatform(Clipboard &clipboard) : m_parts(new Parts{clipboard}) {}

SystemPlatform::~SystemPlatform() = default;

Platform SystemPlatform::platform() {
    return {.clock = m_parts->clock,
            .machine = *m_parts->machine,
            .processes = m_parts->processes,
            .settings = m_parts->settings,
            .notifications = m_parts->notifications,
            .launcher = m_parts->launcher,
            .tools = m_parts->tools,
            .desktop = m_parts->desktop,
            .clipboard = m_parts->clipboard,
            .loginItem = m_parts->loginItem,
            .previewCapturer = m_parts->previewCapturer};
}

} // namespace tarnvale
