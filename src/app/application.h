#pragma once

/// Runs the desktop application with the program's words until its user quits it; the exit status.
extern "C" [[gnu::visibility("default")]] int tarnvaleApplication(int argc, char **argv);
