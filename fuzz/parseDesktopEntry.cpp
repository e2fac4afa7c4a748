#include "discovery/linux/parseDesktopEntry.h"

#include "fuzz/check.h"

using namespace tarnvale;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const std::string_view content = asText(data, size);
    const auto entry = parseDesktopEntry(content);
    if (!entry)
        return 0;
    check(!entry->program.empty() && entry->program.size() <= size, "an application starts a program");
    check(entry->program.find('\n') == std::string::npos, "its name stays on its line");
    check(content.find("[Desktop Entry]") != content.npos, "it has the main group");
    check(content.find("Application") != content.npos && content.find("Exec") != content.npos,
          "it says that it is an application, and of which program");
    check(entry->isHidden ? content.find("Hidden") != content.npos : true, "hidden entries say so");
    check(entry->isShown ? true : content.find("NoDisplay") != content.npos, "unlisted entries say so");
    return 0;
}
