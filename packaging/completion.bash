# Bash completion of tessarine-batch: operations, options, and files where a word may be one.
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
  compopt -o filenames 2>/dev/null
  COMPREPLY=()
  case $before in
  -C | --directory) mapfile -t COMPREPLY < <(compgen -d -- "$word") && return ;;
  -s | --script | export | report | dump | dump-field | make-eigen-table | render | solve | filter-image | distance-2d)
    mapfile -t COMPREPLY < <(compgen -f -- "$word") && return
    ;;
  import) mapfile -t COMPREPLY < <(
    compgen -d -- "$word"
    compgen -f -X '!*.[oO][bB][jJ]' -- "$word"
  ) && return ;;
  esac
  if [[ $word == -* ]]; then
    mapfile -t COMPREPLY < <(compgen -W "$options" -- "$word")
  else
    mapfile -t COMPREPLY < <(compgen -W "$operations" -- "$word")
  fi
}
complete -F _tessarine_batch tessarine-batch
