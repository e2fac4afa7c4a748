#!/usr/bin/env bash
# Runs clang-tidy over all sources in src, or over some files.
#
#   tools/tidy.sh [FILE...]
#
# Most of the time goes into the headers of the standard library and of Qt. So a dozen sources of a target are read
# at once, as the preset "tidy" puts them together. Where this brings a remark, or two sources don't go together, each
# of them is read by itself, and only that counts.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
files=("$@")

# A definition on the command line that the compiler has itself would be a remark.
clang_tidy() { # OPTION... FILE...
    clang-tidy-16 --quiet --extra-arg-before=-U__cpp_concepts --extra-arg=-Wno-builtin-macro-redefined "$@"
}

# Prints the sources of a group about which there is something to say. Clang-tidy's analyzer goes into included sources
# only where the path of the file that includes them holds "UnifiedSource". A name of one source may be used again in
# the next one.
group_with_remarks() { # BUILD-FOLDER GROUP
    clang_tidy -p "$1" --checks=-bugprone-suspicious-include --extra-arg=-Wno-shadow "$2" >/dev/null 2>&1 && return
    echo "one by one: ${2#"$1"/}" >&2 # which takes five times as long
    sed -n '/\/build\//d; s/^#include "\(.*\)"/\1/p' "$2"
}

files_with_remarks() {
    local build=$PWD/build/tidy/UnifiedSources
    rm -rf "$build" # with groups of sources that are gone
    cmake --preset tidy >/dev/null || return
    find src -name .clang-tidy -exec install -D -m 644 {} "$build/{}" \; # a group obeys what its room asks for
    find "$build/src" -name 'unity_*.cxx' -not -path '*_qmlcache.dir/*' -print0 |
        xargs -0 -n 1 -P "$(nproc)" bash -c 'group_with_remarks "$@"' _ "$build"
}

tidy_each() { # FILE...
    cmake --preset tidy -B build/tidy/single -DTARNVALE_UNIFIED=OFF -DTARNVALE_TESTS=ON >/dev/null
    printf '%s\0' "$@" | xargs -0 -n 4 -P "$(nproc)" bash -c 'clang_tidy -p build/tidy/single "$@"' _
}

export -f clang_tidy group_with_remarks

if [ "${#files[@]}" -eq 0 ]; then
    found=$(files_with_remarks)
    [ -z "$found" ] || mapfile -t files <<<"$found"
fi
[ "${#files[@]}" -eq 0 ] || tidy_each "${files[@]}"
