# Completion of morvane's command line in bash.

_morvane_options() {
  case $1 in
    run) echo "--command --file --output --map --help" ;;
    export) echo "--to --force --json --wait --in-place --map --help" ;;
    import) echo "--output --map --help" ;;
    info) echo "--json --map --help" ;;
    goblins) echo "--json --full --obj --glb --help" ;;
    view) echo "--output --map --help" ;;
    *) echo "--version --help" ;;
  esac
}

# Files whose names end in one of the extensions, and folders.
_morvane_files() {
  local word=$1 extension file
  shift
  compopt -o filenames 2>/dev/null
  while IFS= read -r file; do COMPREPLY+=("$file"); done < <(compgen -d -- "$word")
  for extension in "$@"; do
    while IFS= read -r file; do COMPREPLY+=("$file"); done < <(compgen -f -X "!*.$extension" -- "$word")
  done
}

_morvane() {
  local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]} subcommand=
  COMPREPLY=()
  [ "$COMP_CWORD" -gt 1 ] && subcommand=${COMP_WORDS[1]}
  case $word in
    -*)
      mapfile -t COMPREPLY < <(compgen -W "$(_morvane_options "$subcommand")" -- "$word")
      return
      ;;
  esac
  case $subcommand:$before in
    :*) mapfile -t COMPREPLY < <(compgen -W "run export import info goblins view" -- "$word") ;;
    view:-o | view:--output) _morvane_files "$word" html ;;
    *:-o | *:--output) _morvane_files "$word" ma ;;
    *:-f | *:--file) _morvane_files "$word" mel ;;
    *:--to) _morvane_files "$word" psd ;;
    *:--obj) _morvane_files "$word" obj ;;
    *:--glb) _morvane_files "$word" glb ;;
    *:-c | *:--command | *:--map) ;;
    run:* | export:*) _morvane_files "$word" ma ;;
    import:*) _morvane_files "$word" ma psd tga ;;
    info:* | view:*) _morvane_files "$word" psd tga ma ;;
    *) _morvane_files "$word" psd tga ;;
  esac
}

complete -F _morvane morvane
