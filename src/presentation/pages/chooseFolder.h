#pragma once

#include <functional>
#include <optional>
#include <string>

namespace tarnvale {

/// Lets the user choose a folder and hands on its path, or nothing when the user thinks better of it. It
/// returns at once. Main thread.
using FolderChooser = std::function<void(std::function<void(std::optional<std::string>)> onDone)>;

/// The desktop's dialog for that, over the window that has the keyboard, asking for the folder of a project.
void chooseProjectFolder(std::function<void(std::optional<std::string>)> onDone);

} // namespace tarnvale
