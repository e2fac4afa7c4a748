#!/usr/bin/env bash
# Installs the build tree into a prefix and uses it from there, as a packager would.
#
#   installTest.sh BUILD-FOLDER FAKE-APPLICATION-MODULE
set -euo pipefail
build=$1
module=$2
prefix=$(mktemp -d)
trap 'rm -rf "$prefix"' EXIT

fail() {
    echo "FAILED: $*" >&2
    exit 1
}

expect() { # EXPECTED ACTUAL WHAT
    [ "$1" = "$2" ] || fail "$3: expected '$1', got '$2'"
}

cmake --install "$build" --prefix "$prefix" >/dev/null

[ -L "$prefix/bin/tarnctl" ] || fail "tarnctl is no link"
expect tarnvale "$(readlink "$prefix/bin/tarnctl")" "target of the link"
"$prefix/bin/tarnctl" help | grep -q '^usage: tarnctl ports' || fail "the installed tarnctl gives no help"

for file in share/man/man1/tarnctl.1 share/bash-completion/completions/tarnctl \
    share/zsh/site-functions/_tarnctl share/fish/vendor_completions.d/tarnctl.fish; do
    [ -s "$prefix/$file" ] || fail "$file isn't installed"
done

warnings=$(LC_ALL=C.UTF-8 MANWIDTH=90 man --warnings -E UTF-8 -l -Tutf8 -Z "$prefix/share/man/man1/tarnctl.1" \
    2>&1 >/dev/null)
expect "" "$warnings" "warnings of the man page"

# Without the module there is no application; with it, it gets the words and its status counts.
libraries=$(cmake -L -N "$build" 2>/dev/null | sed -n 's/^CMAKE_INSTALL_LIBDIR:[A-Z]*=//p')
rm "$prefix/${libraries:-lib}/tarnvale/libtarnvale-app.so" || fail "the application module isn't installed"
status=0
output=$("$prefix/bin/tarnvale" 2>&1) || status=$?
expect 69 "$status" "status without the module"
grep -q "isn't installed" <<<"$output" || fail "no word of the missing module: $output"

cp "$module" "$prefix/${libraries:-lib}/tarnvale/libtarnvale-app.so"
status=0
output=$("$prefix/bin/tarnctl" frob twice) || status=$?
expect 42 "$status" "status of the module"
expect "word frob
word twice" "$output" "words of the module"

echo "this is no library" >"$prefix/${libraries:-lib}/tarnvale/libtarnvale-app.so"
status=0
output=$("$prefix/bin/tarnvale" 2>&1) || status=$?
expect 69 "$status" "status with a broken module"
grep -q "can't be loaded" <<<"$output" || fail "no word of the broken module: $output"

echo "installed, linked, documented, and the application is found"
