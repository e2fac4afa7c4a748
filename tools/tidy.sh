#!/usr/bin/env bash
# Runs clang-tidy over all our sources, or over some files. Compile commands for single files are those of a preset's
# build (default: dev).
#
#   tools/tidy.sh [PRESET [FILE...]]
#
# Most of the time goes into the headers of the standard library and of Qt. So a dozen sources of a target are read
# at once, as the preset "tidy" puts them together. Where this brings a remark, or two sources don't go together, each
# of them is read by itself, and only that counts.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
preset=${1:-dev}
shift || true
files=("$@")

# Prints the sources of the groups that clang-tidy has something to say about, each group on a line of its own on
# standard error, too: reading them one by one takes five times as long. Its analyzer goes into included sources only
# where the path of the file that includes them holds "UnifiedSource". A definition on the command line that the
# compiler has itself is a remark; so are names of one source that another one uses again.
files_with_remarks() {
    local build=$PWD/build/tidy/UnifiedSources
    rm -rf "$build" # with groups of sources that are gone
    cmake --preset tidy >/dev/null || return
    find src -name .clang-tidy -exec install -D -m 644 {} "$build/{}" \; # a group obeys what its room asks for
    find "$build/src" -name 'unity_*.cxx' -not -path '*_qmlcache.dir/*' -print0 | xargs -0 -n 1 -P "$(nproc)" sh -c '
        clang-tidy-16 --quiet -p "$0" --checks=-bugprone-suspicious-include --extra-arg-before=-U__cpp_concepts \
            --extra-arg=-Wno-builtin-macro-redefined --extra-arg=-Wno-shadow "$1" >/dev/null 2>&1 && exit
        echo "one by one: ${1#"$0"/}" >&2
        sed -n "/\/build\//d; s/^#include \"\(.*\)\"/\1/p" "$1"' "$build"
}

# Headers that GCC has precompiled are of no use to Clang. libstdc++ 12 offers std::expected only to compilers that
# claim this version of concepts; options that only GCC knows are no concern of clang-tidy.
tidy_each() { # FILE...
    mkdir -p build/tidy/single
    sed -E 's/ -Winvalid-pch -include [^ ]*cmake_pch\.hxx//' "build/$preset/compile_commands.json" \
        >build/tidy/single/compile_commands.json
    printf '%s\0' "$@" | xargs -0 -n 4 -P "$(nproc)" clang-tidy-16 --quiet -p build/tidy/single \
        --extra-arg=-std=c++2b --extra-arg=-Wno-builtin-macro-redefined \
        --extra-arg=-U__cpp_concepts --extra-arg=-D__cpp_concepts=202002L \
        --extra-arg=-Wno-unknown-warning-option --extra-arg=-Wno-unused-command-line-argument
}

if [ "${#files[@]}" -eq 0 ]; then
    found=$(files_with_remarks)
    [ -z "$found" ] || mapfile -t files <<<"$found"
fi
[ "${#files[@]}" -eq 0 ] || tidy_each "${files[@]}"
