#include "platform/linux/previewHelperPath.h"

#include "discovery/executablePath.h"
#include "discovery/text.h"

#include <unistd.h>

namespace tarnvale {

std::string previewHelperPath() {
    const std::string folder(parentPath(executablePath()));
    // TARNVALE_HELPER_FOLDER leads from the folder of the executable to that of its helpers, as installed.
    for (const std::string &path :
         {folder + "/tarnvale-preview", folder + "/" TARNVALE_HELPER_FOLDER "/tarnvale-preview"})
        if (access(path.c_str(), X_OK) == 0)
            return path;
    return {};
}

} // namespace tarnvale
