#!/usr/bin/env bash
# Runs clang-tidy over our sources, with the compile commands of a preset's build (default: dev).
#
#   tools/tidy.sh [PRESET [FILE...]]
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
preset=${1:-dev}
shift || true
files=("$@")
[ "${#files[@]}" -gt 0 ] || mapfile -t files < <(git ls-files -- 'src/*.cpp')
# Headers that GCC has precompiled are of no use to Clang.
mkdir -p build/tidy
sed -E 's/ -Winvalid-pch -include [^ ]*cmake_pch\.hxx//' "build/$preset/compile_commands.json" >build/tidy/compile_commands.json
# libstdc++ 12 offers std::expected only to compilers that claim this version of concepts; options that only
# GCC knows are no concern of clang-tidy.
printf '%s\0' "${files[@]}" | xargs -0 -n 4 -P "$(nproc)" clang-tidy-16 --quiet -p build/tidy \
    --extra-arg=-std=c++2b --extra-arg=-Wno-builtin-macro-redefined --extra-arg=-U__cpp_concepts --extra-arg=-D__cpp_concepts=202002L \
    --extra-arg=-Wno-unknown-warning-option --extra-arg=-Wno-unused-command-line-argument
