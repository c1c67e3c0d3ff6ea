# What run, test, bench and .ci/run share: installing what is missing, and building. Sourced, not run.

set -eu
cd "$(dirname "$0")/${KIVERA_UP:-.}"

packages="g++ cmake ninja-build pkg-config ccache mold libfmt-dev libutf8proc-dev libcli11-dev libgtest-dev
  libbenchmark-dev libmuparser-dev rapidjson-dev"

# install_missing PACKAGE...: asks the package manager only for what is not there.
install_missing() {
  missing=""
  for package in "$@"; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'ok installed' || missing="$missing $package"
  done
  [ -n "$missing" ] || return 0
  echo "Installing:$missing"
  as_root=""
  [ "$(id -u)" = 0 ] || as_root="sudo"
  $as_root apt-get update -qq
  # shellcheck disable=SC2086
  $as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends $missing >/dev/null
}

# build PRESET TARGET...: configures once, then builds. A build that works says nothing.
build() {
  preset="$1"
  shift
  log="build/$preset/build.log"
  mkdir -p "build/$preset"
  [ -f "build/$preset/build.ninja" ] || {
    echo "Preparing and building build/$preset, which takes some minutes"
    cmake --preset "$preset" >"$log" 2>&1 || { cat "$log"; exit 1; }
  }
  cmake --build "build/$preset" -- "$@" >"$log" 2>&1 || { grep -v '^\[' "$log" | tail -60; exit 1; }
}
