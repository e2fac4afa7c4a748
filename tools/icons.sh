#!/usr/bin/env bash
# Fetches the icon sets that are compiled into the program into build/icons, at the pinned versions. Does nothing when
# they are there already.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
readonly wanted=tools/icons
readonly target=build/icons

die() {
    echo "icons: $*" >&2
    exit 1
}

# The lock file is copied last, so it tells that all went well.
is_there() {
    cmp -s "$wanted/package-lock.json" "$target/package-lock.fetched"
}

main() {
    is_there && return
    command -v npm >/dev/null || die "npm is missing; install Debian's package npm, then try again."
    echo "icons: fetching the icon sets"
    mkdir -p "$target"
    rm -f "$target/package-lock.fetched"
    cp "$wanted/package.json" "$wanted/package-lock.json" "$wanted/.npmrc" "$target/"
    local log
    log=$(mktemp)
    if ! npm --prefix "$target" ci --ignore-scripts >"$log" 2>&1; then
        cat "$log" >&2
        rm -f "$log"
        die "could not fetch the icon sets. This needs the network once."
    fi
    rm -f "$log"
    cp "$wanted/package-lock.json" "$target/package-lock.fetched"
}

main "$@"
