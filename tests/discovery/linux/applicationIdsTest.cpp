#include "discovery/linux/applicationIds.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tarnvale {
namespace {

using testing::IsEmpty;

TEST(ApplicationIdsTest, unitsOfApplicationsNameThem) {
    const std::string user = "/user.slice/user-1000.slice/user@1000.service/app.slice/";
    const std::string uuid = "01234567-89ab-cdef-0123-456789abcdef";
    struct Row {
        std::string unit;
        std::vector<std::string> ids;
        const char *reason;
    };
    const Row rows[]{
        {"app-gnome-org.gnome.Terminal-4242.scope",
         {"gnome-org.gnome.Terminal", "org.gnome.Terminal"},
         "GNOME's launcher"},
        {"app-org.kde.konsole-1234.scope", {"org.kde.konsole"}, "Plasma, without a launcher"},
        {"app-org.kde.konsole@0123456789abcdef.service", {"org.kde.konsole"}, "Plasma, as a service"},
        {"app-x@autostart.service", {"x"}, "started with the session"},
        {"app-code.service", {"code"}, "a service without a random part"},
        {"app-my\\x2deditor-77.scope", {"my-editor"}, "a dash in the id is escaped"},
        {"app-gnome-my\\x2deditor-77.scope",
         {"gnome-my-editor", "my-editor"},
         "a launcher and an escaped dash"},
        {"app-a\\x20b\\xC3\\xA9-1.scope", {"a b\xC3\xA9"}, "other escaped bytes"},
        {"app-a\\x2-1.scope", {"a\\x2"}, "an escape cut short stays"},
        {"app-flatpak-org.x.Editor-99.scope",
         {"flatpak-org.x.Editor", "org.x.Editor"},
         "flatpak's newer form"},
        {"flatpak-org.x.Editor-99.scope", {"org.x.Editor"}, "flatpak's older form"},
        {"snap.editor.editor-" + uuid + ".scope", {"editor_editor"}, "snap"},
        {"snap.editor.editor." + uuid + ".scope", {"editor_editor"}, "snap's older form"},
        {"snap.code-insiders.code-insiders-" + uuid + ".scope",
         {"code-insiders_code-insiders"},
         "a snap with dashes in its name"},
        {"snap.my-tools.web-ide." + uuid + ".scope", {"my-tools_web-ide"}, "the older form, with dashes"},
        {"app-org.gnome.Terminal.slice/vte-spawn-" + uuid + ".scope",
         {"org.gnome.Terminal"},
         "a tab of a terminal"},
        {"app-org.gnome.Terminal.slice/app-gnome-code-5.scope",
         {"gnome-code", "code", "org.gnome.Terminal"},
         "the innermost comes first"},
        {"app-a-1.scope/inner/group", {"a"}, "groups of its own below"},
    };
    for (const Row &row : rows)
        EXPECT_EQ(applicationIds(user + row.unit), row.ids) << row.reason;
}

TEST(ApplicationIdsTest, otherGroupsBelongToNoApplication) {
    for (const char *group :
         {"", "/", "/init.scope", "/system.slice/nginx.service",
          "/user.slice/user-1000.slice/session-3.scope",
          "/user.slice/user-1000.slice/user@1000.service/app.slice/web.service", "/docker/0123456789ab",
          "/user.slice/user-1000.slice/user@1000.service/app.slice", "/app.slice/app-editor",
          "/app.slice/snap.scope", "/app.slice/snap.editor.scope", "/app.slice/flatpak-x.service",
          "/app.slice/vte-spawn-1.scope"})
        EXPECT_THAT(applicationIds(group), IsEmpty()) << group;
}

} // namespace
} // namespace tarnvale
