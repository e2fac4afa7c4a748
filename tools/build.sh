#!/usr/bin/env bash
# Configures and builds one preset of CMakePresets.json, quietly unless something is wrong.
#
#   tools/build.sh PRESET [TARGET...]
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
preset=$1
shift

mkdir -p "build/$preset"
log=build/$preset/build.log

quietly() {
    if ! "$@" >"$log" 2>&1; then
        cat "$log" >&2
        echo "build: '$*' failed" >&2
        exit 1
    fi
}

if [ ! -f "build/$preset/build.ninja" ]; then
    echo "build: configuring $preset"
    quietly cmake --preset "$preset"
fi
# Nothing to build is told by ninja alone, in a few milliseconds.
if [ "$#" -gt 0 ] || ! ninja -C "build/$preset" -n 2>/dev/null | grep -q 'no work to do'; then
    echo "build: building $preset"
    quietly cmake --build "build/$preset" -- "$@"
fi
