# Completion of orvixctl for fish: the names come from the program itself.
set -l commands list describe idl call run shell register unregister registry trash help
complete -c orvixctl -n "not __fish_seen_subcommand_from $commands" -f -a "$commands"
complete -c orvixctl -n "__fish_seen_subcommand_from call describe" -f \
    -a '(set -l words (commandline -opc); orvixctl complete $words[2..] (commandline -ct) 2>/dev/null)'
complete -c orvixctl -n "__fish_seen_subcommand_from registry" -f -a "list get set delete export import check"
complete -c orvixctl -n "__fish_seen_subcommand_from trash" -f -a "list restore empty"
