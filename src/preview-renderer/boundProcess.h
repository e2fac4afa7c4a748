#pragma once

namespace tarnvale {

/// Makes this program, and those that it starts, the first to yield: to other programs for the processor, and
/// to the machine when memory runs short. None of them can take more memory than a page may need. It ends
/// with the program that started it.
void boundProcess();

/// Takes from the environment what would lead to the user's desktop or change how the browser works, and sets
/// what it needs. `isSandboxed` false is for tests, which may run as root.
void prepareEnvironment(bool isSandboxed);

} // namespace tarnvale
