#!/usr/bin/env bash
# What each shell offers behind tarnctl, with a tarnctl that prints a table of its own.
set -euo pipefail
completions=$(cd "$(dirname "${BASH_SOURCE[0]}")/../../packaging/completions" && pwd)
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

cat >"$folder/tarnctl" <<'TABLE'
#!/bin/sh
cat <<'END'
PORT    PID     UP       NAME                        COMMAND
:3000   4242    2h 5m    shop: the best              node
:631    77      12s      cupsd                       cupsd  [network]
:65535  123456  -        web · nginx:1.25            docker-proxy
END
TABLE
chmod 755 "$folder/tarnctl"
export PATH="$folder:$PATH" HOME="$folder"

fail() {
    echo "FAILED: $*" >&2
    exit 1
}

expect() { # WHAT EXPECTED ACTUAL
    [ "$2" = "$3" ] || fail "$1: expected '$2', got '$3'"
}

complete_in_bash() {
    bash --norc -c '
        source "$1/tarnctl.bash"
        shift
        COMP_WORDS=("$@") COMP_CWORD=$(($# - 1))
        _tarnctl tarnctl
        echo "${COMPREPLY[*]}"' bash "$completions" "$@"
}

expect "bash, command" "ports kill open help" "$(complete_in_bash tarnctl '')"
expect "bash, beginning of a command" "kill" "$(complete_in_bash tarnctl k)"
expect "bash, option" "--all" "$(complete_in_bash tarnctl ports '')"
expect "bash, port" "3000 631 65535" "$(complete_in_bash tarnctl kill '')"
expect "bash, beginning of a port" "631 65535" "$(complete_in_bash tarnctl open 6)"
expect "bash, second port" "" "$(complete_in_bash tarnctl kill 3000 '')"

if command -v fish >/dev/null; then
    complete_in_fish() {
        fish --no-config -c 'source $argv[1]/tarnctl.fish; complete -C $argv[2]' "$completions" "$1"
    }
    expect "fish, commands" "help kill open ports" "$(complete_in_fish 'tarnctl ' | cut -f1 | sort | xargs)"
    expect "fish, option" "--all" "$(complete_in_fish 'tarnctl ports --' | cut -f1)"
    expect "fish, ports" "3000 631 65535" "$(complete_in_fish 'tarnctl kill ' | cut -f1 | sort | xargs)"
    expect "fish, what listens" "shop: the best              node" \
        "$(complete_in_fish 'tarnctl kill 3' | cut -f2)"
    expect "fish, second port" "" "$(complete_in_fish 'tarnctl kill 3000 ' | cut -f1)"
else
    echo "fish: [  SKIPPED ] fish isn't installed"
fi

if command -v zsh >/dev/null; then
    # zsh completes only at a prompt, so it gets a terminal of its own, where compadd tells what it is given.
    cat >"$folder/ask.zsh" <<'ASK'
zmodload zsh/zpty zsh/zselect
export TERM=dumb
zpty shell zsh -f -i
zpty -w shell "PS1='>'; fpath=($1 \$fpath); autoload -Uz compinit; compinit -D -u; setopt no_beep"
zpty -w shell "compadd() {
    local -a reply
    builtin compadd -O reply \"\$@\"
    print -rl -- \$reply >>$3
    builtin compadd \"\$@\"
}"
zpty -w shell "tell() { : >$3.done }; comppostfuncs=(tell)"
zpty -w shell ": >$3.ready"
for wait in {1..500}; do [[ -e $3.ready ]] && break; zselect -t 2; done
zpty -w -n shell "$2"$'\t'
for wait in {1..500}; do [[ -e $3.done ]] && break; zselect -t 2; done
zpty -d shell
ASK
    complete_in_zsh() {
        rm -f "$folder"/offered*
        zsh -f "$folder/ask.zsh" "$completions" "$1" "$folder/offered" >/dev/null 2>&1 </dev/null
        sort -u "$folder/offered" | xargs
    }
    expect "zsh, commands" "help kill open ports" "$(complete_in_zsh 'tarnctl ')"
    expect "zsh, option" "--all" "$(complete_in_zsh 'tarnctl ports -')"
    expect "zsh, ports" "3000 631 65535" "$(complete_in_zsh 'tarnctl kill ')"
    expect "zsh, beginning of a port" "631 65535" "$(complete_in_zsh 'tarnctl open 6')"
else
    echo "zsh: [  SKIPPED ] zsh isn't installed"
fi
echo "bash, fish and zsh complete commands and ports"
