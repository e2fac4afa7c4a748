# Completion for tarnctl(1) in fish: the command words, and the ports that are listened on with what listens.

function __tarnctl_ports
    # The table, its third column ending at the 25th character: ":3000   4242    5m       shop                        node"
    tarnctl ports --all 2>/dev/null | string replace -rf '^(?=:(\d+) ).{25}(.*?)\s*$' '$1\t$2'
end

function __tarnctl_needs_port
    set -l words (commandline -opc)
    test (count $words) -eq 2; and contains -- $words[2] kill open
end

complete -c tarnctl -f
complete -c tarnctl -n __fish_use_subcommand -a ports -d 'list listening dev ports'
complete -c tarnctl -n __fish_use_subcommand -a kill -d 'stop whatever is listening on a port'
complete -c tarnctl -n __fish_use_subcommand -a open -d 'open a port in the browser'
complete -c tarnctl -n __fish_use_subcommand -a help -d 'show the usage'
complete -c tarnctl -n '__fish_seen_subcommand_from ports' -l all -d 'include system processes'
complete -c tarnctl -n __tarnctl_needs_port -a '(__tarnctl_ports)'
