#include <cstdio>

/// Stands in for the application module: tells its words and ends with a status of its own.
extern "C" int tarnvaleApplication(int argc, char **argv) {
    for (int i = 1; i < argc; ++i)
        std::printf("word %s\n", argv[i]);
    return 42;
}
