#!/usr/bin/env bash
# Fails on colours, text sizes and durations that stand in QML instead of in the theme.
#
#   tools/checkQml.sh [FILE...]     by default every QML file of the sources
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
status=0

# Shows what matches in files that aren't the theme, comments left out.
refuse() { # WHAT PATTERN FILE...
    local what=$1 pattern=$2
    shift 2
    local found
    found=$(grep -HnE -- "$pattern" "$@" | grep -vE '^[^:]+:[0-9]+:[[:space:]]*//' || true)
    [ -z "$found" ] && return
    printf '%s belongs into Theme.qml:\n%s\n' "$what" "$found" >&2
    status=1
}

main() {
    local files=("$@")
    [ "$#" -gt 0 ] || mapfile -t files < <(find src -name '*.qml' ! -name Theme.qml | sort)
    [ "${#files[@]}" -gt 0 ] || return 0
    refuse "A colour" "[\"']#[0-9a-fA-F]{3,8}[\"']" "${files[@]}"
    refuse "A text size" '(pixelSize|pointSize|textSize)[[:space:]]*:[[:space:]]*[0-9]' "${files[@]}"
    refuse "A duration" '\<(duration|interval)[[:space:]]*:[[:space:]]*[1-9]' "${files[@]}"
    return "$status"
}

main "$@"
