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

# The packages of the named groups, as the file `packages` (or the one in packages_file) lists them.
packages_of() {
  awk -v wanted=" $* " '/^#/ || NF == 0 { next }
    /^\[/ { group = substr($0, 2, length($0) - 2); next }
    index(wanted, " " group " ") { print $1 }' "${packages_file:-packages}"
}

is_installed() { [ "$(dpkg-query -W -f='${db:Status-Status}' "$1" 2>/dev/null)" = installed ]; }

install_missing() {
  local missing=() package
  for package in $(packages_of "$@"); do
    is_installed "$package" || missing+=("$package")
  done
  [ ${#missing[@]} -eq 0 ] && return 0

  command -v apt-get >/dev/null || die "these packages are missing and there is no apt-get to install them: ${missing[*]}"
  local root=()
  if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null || die "run this as root, or install sudo, or install these packages by hand: ${missing[*]}"
    root=(sudo)
  fi
  say "Installing ${#missing[@]} Debian packages: ${missing[*]}"
  local log
  log=$(mktemp)
  "${root[@]}" apt-get update -qq >"$log" 2>&1 || die "the package lists cannot be fetched; is there a network? apt-get says: $(tail -n 1 "$log")"
  "${root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}" >"$log" 2>&1 ||
    die "the packages cannot be installed: $(grep -m 1 '^E:' "$log" || tail -n 1 "$log")"
  rm -f "$log"
}

# configure PRESET [CMAKE-ARGUMENT...]: quiet unless it fails.
configure() {
  local preset=$1 log
  shift
  log=$(mktemp)
  cmake --preset "$preset" "$@" >"$log" 2>&1 || {
    cat "$log" >&2
    die "the build could not be configured; the reason stands above (free space: $(df -Ph . | awk 'NR==2 {print $4}'))"
  }
  rm -f "$log"
}

# build PRESET [TARGET...]
build() {
  local preset=$1
  shift
  local targets=()
  [ $# -gt 0 ] && targets=(--target "$@")
  cmake --build --preset "$preset" "${targets[@]}" || die "the build failed; the reason stands above (free space: $(df -Ph . | awk 'NR==2 {print $4}'))"
}
