# Shared by ./run and ./test: puts on the machine what is missing, and configures and builds.
# Every step says in a line what it does; a failure ends in one sentence that says what to do.

say() { if [ -t 1 ]; then printf '\033[1m==\033[0m %s\n' "$*"; else printf '== %s\n' "$*"; fi; }
die() {
  printf 'tessarine: %s\n' "$*" >&2
  exit 1
}

# As the batch tool ends where its command line is wrong.
misused() {
  printf 'tessarine: %s\n' "$*" >&2
  exit 2
}

# The file `packages`, or the one in packages_file: what a group holds, and what its first comment says it is for.
packages_of() {
  awk -v wanted="[$1]" '/^\[/ { group = $0; next } /^#/ || NF == 0 { next } group == wanted { print $1 }' \
    "${packages_file:-packages}"
}
purpose_of() {
  awk -v wanted="[$1]" '/^\[/ { group = $0 } /^# / && group == wanted { print substr($0, 3); exit }' \
    "${packages_file:-packages}"
}

is_installed() { [ "$(dpkg-query -W -f='${db:Status-Status}' "$1" 2>/dev/null)" = installed ]; }

free_space() { df -Ph "$1" | awk 'NR == 2 { print $4 }'; }

# install_missing GROUP...
install_missing() {
  local group package absent missing=() lines=()
  for group; do
    absent=()
    for package in $(packages_of "$group"); do
      is_installed "$package" || absent+=("$package")
    done
    [ ${#absent[@]} -eq 0 ] && continue
    lines+=("Installing Debian packages $(purpose_of "$group") (${#absent[@]}): ${absent[*]}")
    missing+=("${absent[@]}")
  done
  [ ${#missing[@]} -eq 0 ] && return 0

  command -v apt-get >/dev/null || die "there is no apt-get here: install these packages by hand: ${missing[*]}"
  local root=()
  if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null || die "run this as root, or install sudo, or install these packages by hand: ${missing[*]}"
    root=(sudo)
  fi
  local line
  for line in "${lines[@]}"; do say "$line"; done
  "${root[@]}" true || die "sudo refuses: run this as root, or install these packages by hand: ${missing[*]}"

  # Old lists, or packages fetched before, may do as well.
  local listed installed
  listed=$(get_packages -o APT::Update::Error-Mode=any update)
  installed=$(get_packages install -y --no-install-recommends "${missing[@]}") || explain_apt "$listed" "$installed"
}

# apt-get in English, as the user in root[@], silent unless it fails.
get_packages() { "${root[@]}" env LC_ALL=C DEBIAN_FRONTEND=noninteractive apt-get -qq "$@" 2>&1 </dev/null; }

# What ended update is a reason only where install misses the lists.
# explain_apt OUTPUT-OF-UPDATE OUTPUT-OF-INSTALL
explain_apt() {
  local error said=$2
  case $2 in
  *"Unable to locate package"* | *"has no installation candidate"*) said=$1$'\n'$2 ;;
  esac
  case $said in
  *"No space left on device"* | *"enough free space"*)
    die "the disk is full: make room for the packages and run this again (free space: $(free_space /usr) in /usr, $(free_space /var) in /var)"
    ;;
  *"Failed to fetch"*)
    error=$(grep -m 1 "Failed to fetch" <<<"$said")
    die "the packages cannot be fetched: see to the network and run this again; apt-get says: $error"
    ;;
  esac
  error=$(printf '%s\n' "$2" | grep -m 1 '^E:' || printf '%s' "${2##*$'\n'}")
  die "the packages cannot be installed: see to what apt-get says and run this again: $error"
}

# configure PRESET [CMAKE-ARGUMENT...]: quiet unless it fails.
configure() {
  local preset=$1 output
  shift
  output=$(cmake --preset "$preset" "$@" 2>&1) || {
    printf '%s\n' "$output" >&2
    die "the build could not be configured; the reason stands above (free space: $(free_space .))"
  }
}

# build PRESET [TARGET...]
build() {
  local preset=$1
  shift
  local targets=()
  [ $# -gt 0 ] && targets=(--target "$@")
  cmake --build --preset "$preset" "${targets[@]}" || die "the build failed; the reason stands above (free space: $(free_space .))"
}
