# Bash completion for zyl: verbs, options, method names, program fields.
_zyl() {
  local word=${COMP_WORDS[COMP_CWORD]} verb= i
  COMPREPLY=()
  for ((i = 1; i < COMP_CWORD; ++i)); do
    case ${COMP_WORDS[i]} in
      --module | --profile | --sample-rate) ((++i)) ;;
      -*) ;;
      *) verb=${COMP_WORDS[i]}; break ;;
    esac
  done
  local words=
  case $verb in
    '')
      if [[ $word == -* ]]; then
        words='--module --profile --sample-rate --version --help'
      else
        words=$(zyl --help 2>/dev/null | awk '
          /^Verbs:/ { verbs = 1 } verbs && /^  [a-z]/ { print $1 }')
      fi
      ;;
    run) ;;
    methods | help) words=$(zyl methods 2>/dev/null) ;;
    eval | repl) return ;;
    *)
      if [[ $word == -* ]]; then
        words=$(zyl "$verb" --help 2>/dev/null | grep -oE '^ +(-[a-z], )?--[a-z0-9-]+' |
          grep -oE -- '--[a-z0-9-]+')
      elif [[ $verb == edit && $word == [A-Z]* && ! -e $word ]]; then
        words=$(zyl methods 2>/dev/null | grep -E '^(PRG|KG|Zone)' | sed 's/$/=/')
        compopt -o nospace
      fi
      ;;
  esac
  if [[ -n $words ]]; then
    mapfile -t COMPREPLY < <(compgen -W "$words" -- "$word")
  fi
}
complete -o default -F _zyl zyl
