#include "app/loadApplication.h"

#include "discovery/executablePath.h"
#include "discovery/text.h"

#include <cstdio>
#include <dlfcn.h>
#include <string>
#include <sysexits.h>
#include <unistd.h>

namespace tarnvale {

namespace {

/// The first place that holds the module; empty when none does.
std::string modulePath() {
    const std::string folder(parentPath(executablePath()));
    // TARNVALE_MODULE_FOLDER leads from the folder of the executable to that of the module, as installed.
    for (const std::string &path :
         {folder + "/libtarnvale-app.so", folder + "/" TARNVALE_MODULE_FOLDER "/libtarnvale-app.so"})
        if (access(path.c_str(), R_OK) == 0)
            return path;
    return {};
}

int report(const char *text, const char *reason = nullptr) {
    std::fprintf(stderr, reason == nullptr ? "tarnvale: %s\n" : "tarnvale: %s: %s\n", text, reason);
    return EX_UNAVAILABLE;
}

} // namespace

int loadApplication(int argc, char **argv) {
    using Entry = int (*)(int, char **);
    const std::string path = modulePath();
    if (path.empty())
        return report("the desktop application isn't installed; 'tarnctl help' lists what works without it");
    void *const module = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (module == nullptr)
        return report("the desktop application can't be loaded", dlerror());
    const auto entry = reinterpret_cast<Entry>(dlsym(module, "tarnvaleApplication"));
    if (entry == nullptr)
        return report("the desktop application is not of this version", dlerror());
    return entry(argc, argv);
}

} // namespace tarnvale
