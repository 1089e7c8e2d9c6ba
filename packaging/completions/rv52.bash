# Completion of rv52 for bash.
_rv52() {
  local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]} command=
  local commands="ports id download upload verify vin show diff new modify import export check"
  local at
  for ((at = 1; at < COMP_CWORD; at++)); do
    [[ " $commands " == *" ${COMP_WORDS[at]} "* ]] && { command=${COMP_WORDS[at]}; break; }
  done
  case $before in
    --simulate) COMPREPLY=($(compgen -W "RACE EX" -- "$word")); return ;;
    --port | --timing | --slope | --cells | --by) return ;;
  esac
  if [[ $word == -* ]]; then
    local options="--help --quiet"
    case $command in
      "") options="$options --version --port --device --simulate" ;;
      ports | id | verify | diff | check) options="$options --json" ;;
      download) options="$options --image" ;;
      upload) options="$options --backup --yes" ;;
      vin) options="$options --yes --json" ;;
      show) options="$options --csv --json" ;;
      new) options="$options --timing --slope" ;;
      modify) options="$options --cells --by --output" ;;
    esac
    COMPREPLY=($(compgen -W "$options" -- "$word"))
  elif [ -z "$command" ] && [ "$before" != --device ]; then
    COMPREPLY=($(compgen -W "$commands" -- "$word"))
  elif [ "$command" = new ] && [ "$before" = new ]; then
    COMPREPLY=($(compgen -W "RACE EX" -- "$word"))
  else
    compopt -o default
    [[ $command == show || $command == diff ]] && COMPREPLY=($(compgen -f -W module -- "$word"))
  fi
}
complete -F _rv52 rv52
