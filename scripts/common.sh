# Sourced by the other scripts: goes to the sources, and names the steps of a build.

cd "$(dirname "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")")"

if command -v ccache >/dev/null; then
  export CMAKE_CXX_COMPILER_LAUNCHER=${CMAKE_CXX_COMPILER_LAUNCHER-ccache}
  export CCACHE_SLOPPINESS=${CCACHE_SLOPPINESS-pch_defines,time_macros} # or it keeps nothing of precompiled headers
fi

say() { printf '\n== %s\n' "$*"; }

# quietly COMMAND...: shows the command's output only when it fails.
quietly() {
  local log status=0
  log=$(mktemp)
  "$@" >"$log" 2>&1 || status=$?
  [ $status -eq 0 ] || { cat "$log" >&2; echo "failed: $*" >&2; }
  rm -f "$log"
  return $status
}

# build FOLDER [TARGET]
build() { quietly cmake --build "$1" -j "$(nproc)" ${2:+--target "$2"}; }
