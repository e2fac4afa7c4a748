#pragma once

namespace tarnvale {

/// Loads the application module, which lies beside the executable in the build tree and in the library folder
/// as installed, runs it with the program's words, and returns its exit status.
///
/// The module exports `extern "C" int tarnvaleApplication(int argc, char **argv)`. Where it isn't installed
/// or can't be loaded, says so on standard error and returns 69 (EX_UNAVAILABLE, sysexits.h).
int loadApplication(int argc, char **argv);

} // namespace tarnvale
