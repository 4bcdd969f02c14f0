# Completion of orvixctl for bash: the names come from the program itself.
_orvixctl() {
  local current=$2 command=${COMP_WORDS[1]}
  local IFS=$'\n'
  if [ "$COMP_CWORD" = 1 ]; then
    COMPREPLY=($(compgen -W $'list\ndescribe\nidl\ncall\nrun\nshell\nregister\nunregister\nregistry\ntrash\nhelp\n--help\n--version' -- "$current"))
  elif [ "$command" = call ] || [ "$command" = describe ]; then
    # A word with ":=" is several to bash.
    local typed=${COMP_LINE:0:COMP_POINT}
    typed=${typed##* }
    COMPREPLY=($(orvixctl complete "${COMP_WORDS[@]:1:COMP_CWORD-1}" "$typed" 2>/dev/null))
    [[ $typed == *:* ]] && COMPREPLY=("${COMPREPLY[@]#"${typed%"${typed##*:}"}"}")
    [[ ${#COMPREPLY[@]} = 1 && ${COMPREPLY[0]} == *[.=] ]] && compopt -o nospace
  elif [ "$command" = registry ] && [ "$COMP_CWORD" = 2 ]; then
    COMPREPLY=($(compgen -W $'list\nget\nset\ndelete\nexport\nimport\ncheck' -- "$current"))
  elif [ "$command" = trash ] && [ "$COMP_CWORD" = 2 ]; then
    COMPREPLY=($(compgen -W $'list\nrestore\nempty' -- "$current"))
  else
    compopt -o default
  fi
}
complete -F _orvixctl orvixctl
