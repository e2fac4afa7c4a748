#pragma once

namespace tarnvale {

/// Puts the words of this system in the place of those that only make sense on another one, from now on.
/// Needs the application object, which keeps them. Main thread.
void installWords();

} // namespace tarnvale
