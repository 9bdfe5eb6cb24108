# Completion of fieldrun, tanksim, flowlink and runfactory in bash. What there is to complete is asked of
# the program's own help.

_gantry() {
  local program=${COMP_WORDS[0]} word=${COMP_WORDS[COMP_CWORD]} verb=
  if [[ ${program##*/} == fieldrun && $COMP_CWORD -gt 1 ]]; then
    verb=${COMP_WORDS[1]}
  fi
  if [[ $word == -* ]]; then
    COMPREPLY=($(compgen -W "$("$program" $verb --help 2>/dev/null | grep -oE -- '--[a-z][a-z-]*')" -- "$word"))
  elif [[ ${program##*/} == fieldrun && $COMP_CWORD -eq 1 ]]; then
    COMPREPLY=($(compgen -W "$("$program" --help 2>/dev/null | sed -n '/^Subcommands:/,$s/^  \([a-z]\+\) .*/\1/p')" -- "$word"))
  else
    compopt -o filenames 2>/dev/null
    COMPREPLY=($(compgen -f -- "$word"))
  fi
}
complete -F _gantry fieldrun tanksim flowlink runfactory
