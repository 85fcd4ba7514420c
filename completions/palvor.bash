# bash completion of palvor

_palvor() {
  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
  COMPREPLY=()
  case $previous in
    -o|-S)
      compopt -o filenames 2>/dev/null
      mapfile -t COMPREPLY < <(compgen -d -- "$current")
      return ;;
    -p|-s|-J|-m|-M|-n|-i|-x|-N) return ;;
  esac
  if [[ $current == -* ]]; then
    mapfile -t COMPREPLY < <(compgen -W '-o -p -S -s -J -m -M -n -i -x -N -c -q -v -a -l -b -w -X -L -H -Z -f -z -U -R -C -h' -- "$current")
  else
    compopt -o filenames
    mapfile -t COMPREPLY < <(compgen -d -- "$current")
  fi
}

complete -F _palvor palvor
