# Completion for tarnctl(1) in bash: the command words, and the ports that are listened on.

_tarnctl_ports() {
    # The table's first column, ":3000".
    "$1" ports --all 2>/dev/null | sed -n 's/^:\([0-9][0-9]*\) .*/\1/p'
}

_tarnctl() {
    local command=$1 current=${COMP_WORDS[COMP_CWORD]}
    local candidates=
    if [ "$COMP_CWORD" -eq 1 ]; then
        candidates='ports kill open help'
    else
        case ${COMP_WORDS[1]} in
        ports) candidates=--all ;;
        kill | open) [ "$COMP_CWORD" -eq 2 ] && candidates=$(_tarnctl_ports "$command") ;;
        esac
    fi
    mapfile -t COMPREPLY < <(compgen -W "$candidates" -- "$current")
}

complete -F _tarnctl tarnctl
