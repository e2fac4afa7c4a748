#!/usr/bin/env bash
# What an installation tells the desktop, checked with the desktop's own tools.
#
#   desktopFilesTest.sh BUILD-FOLDER
set -euo pipefail
build=$1
prefix=$(mktemp -d)
trap 'rm -rf "$prefix"' EXIT
id=dev.tarnvale.Tarnvale
share=$prefix/share

fail() {
    echo "FAILED: $*" >&2
    exit 1
}

expect() { # EXPECTED ACTUAL WHAT
    [ "$1" = "$2" ] || fail "$3: expected '$1', got '$2'"
}

value_of() { # KEY FILE
    sed -n "s|^$1=||p" "$2" | head -n 1
}

cmake --install "$build" --prefix "$prefix" >/dev/null

desktop=$share/applications/$id.desktop
service=$share/dbus-1/services/$id.service
provider=$share/gnome-shell/search-providers/$id.search-provider.ini
runner=$share/krunner/dbusplugins/$id.desktop
metainfo=$share/metainfo/$id.metainfo.xml
for file in "$desktop" "$service" "$provider" "$runner" "$metainfo" \
    "$share/dbus-1/interfaces/dev.tarnvale.Shortcuts.xml" "$share/icons/hicolor/scalable/apps/$id.svg" \
    "$share/icons/hicolor/symbolic/apps/$id-symbolic.svg" \
    "$share/icons/hicolor/symbolic/apps/$id-alarm-symbolic.svg"; do
    [ -s "$file" ] || fail "$file isn't installed"
done

# One name everywhere, and programs that are there.
expect "$id" "$(value_of Icon "$desktop")" "icon of the application"
expect true "$(value_of DBusActivatable "$desktop")" "start through the bus"
expect "$id" "$(value_of Name "$service")" "name on the bus"
command=$(value_of Exec "$service")
expect "$prefix/bin/tarnvale --gapplication-service" "$command" "what the bus starts"
[ -x "${command%% *}" ] || fail "the bus can't start ${command%% *}"
for line in $(sed -n 's/^Exec=\([^ ]*\).*/\1/p' "$desktop"); do
    [ -x "$prefix/bin/$line" ] || fail "$line of the desktop file isn't installed"
done
expect "$id.desktop" "$(value_of DesktopId "$provider")" "application of the search"
expect "$id" "$(value_of BusName "$provider")" "name of the search"
expect /dev/tarnvale/Tarnvale/SearchProvider "$(value_of ObjectPath "$provider")" "object of the search"
expect "$id" "$(value_of X-Plasma-DBusRunner-Service "$runner")" "name of the runner"
expect /dev/tarnvale/Tarnvale/Runner "$(value_of X-Plasma-DBusRunner-Path "$runner")" "object of the runner"
for action in $(value_of Actions "$desktop" | tr ';' ' '); do
    grep -qFx "[Desktop Action $action]" "$desktop" || fail "action $action has no group"
done

if command -v desktop-file-validate >/dev/null; then
    expect "" "$(desktop-file-validate "$desktop" 2>&1)" "remarks on the desktop file"
else
    echo "desktop file: not validated, desktop-file-validate isn't installed"
fi
if command -v appstreamcli >/dev/null; then
    appstreamcli validate --no-net "$metainfo" || fail "the metainfo isn't valid"
else
    echo "metainfo: not validated, appstreamcli isn't installed"
fi
if command -v xmllint >/dev/null; then
    xmllint --noout --nonet "$share/dbus-1/interfaces/dev.tarnvale.Shortcuts.xml" "$metainfo"
fi
if command -v gapplication >/dev/null; then
    expect "toggle-panel list" "$(XDG_DATA_HOME=$share XDG_DATA_DIRS=$share PATH="$prefix/bin:$PATH" \
        gapplication list-actions "$id" | xargs)" "actions of the application"
    expect "$id" "$(XDG_DATA_HOME=$share XDG_DATA_DIRS=$share PATH="$prefix/bin:$PATH" \
        gapplication list-apps | xargs)" "applications that the bus can start"
fi
echo "the desktop finds the application, its actions and its search"
