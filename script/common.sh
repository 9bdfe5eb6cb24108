# What the other scripts share; sourced by them from anywhere, it leaves them in the project's folder.

set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

fail() {
  printf '%s: %s\n' "$(basename "$0")" "$*" >&2
  exit 1
}

# usage_of FILE: the comment at the head of a script, which is its help.
usage_of() { sed -n '2,/^$/s/^# \{0,1\}//p' "$1"; }

# build PRESET [TARGET...]: configures and builds one preset; what a compiler says is shown as it is.
build() {
  local preset=$1 log
  shift
  log=$(mktemp)
  if ! cmake --preset "$preset" >"$log" 2>&1; then
    cat "$log" >&2
    rm -f "$log"
    fail "could not configure the preset '$preset'"
  fi
  rm -f "$log"
  cmake --build "build/$preset" --parallel "$(nproc)" ${1:+--target "$@"}
}

# Whether two tables of results hold the same but for their last column, the id of the run.
same_table() {
  cmp <(sed 's/,[^,]*$//' "$1") <(sed 's/,[^,]*$//' "$2")
}
