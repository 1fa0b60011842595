# Completion for bash. The words come from the program's own help, so that they are never older than the program.
_quillmarden_cli() {
  local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]} program=${COMP_WORDS[0]} command='' words
  local i
  for ((i = 1; i < COMP_CWORD; ++i)); do
    case ${COMP_WORDS[i]} in
      -*) [[ ${COMP_WORDS[i]} == --runnable || ${COMP_WORDS[i]} == --full ]] || ((++i)) ;;
      *) command=${COMP_WORDS[i]} && break ;;
    esac
  done
  case $before in
    --repository | --output | --grid | --report | --script | --file | --password-file)
      COMPREPLY=($(compgen -f -- "$word")) && compopt -o filenames
      return ;;
    --*-folder | --folder)
      COMPREPLY=($(compgen -d -- "$word")) && compopt -o filenames
      return ;;
  esac
  if [[ $word == -* ]]; then
    words=$("$program" ${command:+"$command"} --help 2>/dev/null | grep -oE -- '(^|[ ,])--[a-z][a-z0-9-]*' | tr -d ' ,')
  elif [[ -z $command ]]; then
    # A command stands at the beginning of a line of its own, behind two blanks.
    words=$("$program" --help 2>/dev/null | sed -nE 's/^  ([a-z][a-z-]*)( .*)?$/\1/p')
  else
    COMPREPLY=($(compgen -f -- "$word")) && compopt -o filenames
    return
  fi
  COMPREPLY=($(compgen -W "$words" -- "$word"))
}
complete -F _quillmarden_cli quillmarden-cli
