/// One scan through lsof, ps and docker: what the native one is measured against.

#include "discovery/StockToolsMachine.h"
#include "discovery/scanListeningPorts.h"

#include <cstdio>
#include <cstdlib>

int main() {
    tarnvale::StockToolsMachine machine;
    if (!tarnvale::scanListeningPorts(machine).empty())
        return EXIT_SUCCESS;
    // Every load has listeners: an empty list measures nothing.
    std::fputs("benchmark-stock: nothing found; a tool that takes longer than five seconds is given up\n",
               stderr);
    return EXIT_FAILURE;
}
