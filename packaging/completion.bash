# Bash completion of tessarine-batch: operations, options, and files where an operation takes one.
_tessarine_batch() {
  local operations="new import export report dump dump-field
    subdivide-loop subdivide-adaptive simplify optimize project-samples build-initial-mesh refine-hierarchical
    refine-incremental refine-two-step two-step-first two-step-second two-step-third refine-energy generate-splats
    set-material menu
    generate-mesh show-field connect-next save-environment fit-vertices fit-limit-surface build-octree triangle-quality
    make-eigen-table limit-point solve filter-image distance-2d
    camera tool mouse-move left-down left-up right-down right-up render status"
  local options="-C --directory -s --script -q --quiet --window --threads --help --version"
  local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]}
  [ "$word" != = ] || word= # as in --script=FILE
  [ "$before" != = ] || before=${COMP_WORDS[COMP_CWORD - 2]}
  compopt -o filenames 2>/dev/null
  COMPREPLY=()

  # The operation that the word belongs to, how many arguments stand between them, and the folder of -C.
  local operation= arguments=0 folder= i
  for ((i = 1; i < COMP_CWORD; i++)); do
    case ${COMP_WORDS[i]} in
    --help) arguments=0 && break ;;
    --) ((++i < COMP_CWORD)) && ((++arguments)) ;;
    -C | --directory)
      [ "${COMP_WORDS[i + 1]}" != = ] || ((++i))
      folder=${COMP_WORDS[++i]//[\\\'\"]/}
      folder=${folder/#\~/$HOME}
      ;;
    *)
      if [[ " ${operations//$'\n'/ } " == *" ${COMP_WORDS[i]} "* ]]; then
        operation=${COMP_WORDS[i]} arguments=0
      else
        ((++arguments))
      fi
      ;;
    esac
  done

  local files=0 excluded=
  case $operation in
  import) files=1 excluded='!*.[oO][bB][jJ]' ;;
  export | report | dump | dump-field | make-eigen-table | render) files=1 ;;
  filter-image | distance-2d) files=2 ;;
  solve) files=3 ;;
  '')
    case $before in
    -C | --directory) mapfile -t COMPREPLY < <(compgen -d -- "$word") && return ;;
    -s | --script) files=1 arguments=0 ;;
    esac
    ;;
  esac

  if ((arguments < files)); then
    mapfile -t COMPREPLY < <(
      CDPATH= cd -- "${folder:-.}" 2>/dev/null || exit
      compgen -f -X "$excluded" -- "$word"
      [ -z "$excluded" ] || compgen -d -- "$word"
    )
    for i in "${!COMPREPLY[@]}"; do # what readline does in the current folder
      [ -z "$folder" ] || [ ! -d "$folder/${COMPREPLY[i]}" ] || COMPREPLY[i]+=/
    done
    [[ ${COMPREPLY[0]-} != */ ]] || compopt -o nospace 2>/dev/null
  elif [[ $word == -* && -z $operation ]]; then
    mapfile -t COMPREPLY < <(compgen -W "$options" -- "$word")
  else
    mapfile -t COMPREPLY < <(compgen -W "$operations" -- "$word")
  fi
}
complete -F _tessarine_batch tessarine-batch
