# Shared by the scripts: paths, step announcements and error reporting.

set -euo pipefail

SOURCE_DIR=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
CACHE_DIR=${SPEECH_CACHE:-${XDG_CACHE_HOME:-$HOME/.cache}/speech}
mkdir -p "$CACHE_DIR"
CACHE_DIR=$(cd "$CACHE_DIR" && pwd)

# One line per step, on standard error so that a program's own output stays clean.
step() { printf '==> %s\n' "$*" >&2; }

fail() {
  printf 'error: %s\n' "$*" >&2
  exit 1
}

# run_logged LOG COMMAND...: keeps a chatty command's output in a file and shows its end when it fails.
run_logged() {
  local log=$1
  shift
  mkdir -p "$(dirname "$log")"
  if ! "$@" >"$log" 2>&1; then
    tail -n 30 "$log" >&2
    fail "'$*' failed; the whole output is in $log"
  fi
}

# as_root COMMAND...: packages need root; a container usually is root already.
as_root() {
  if [ "$(id -u)" -eq 0 ]; then "$@"; else sudo "$@"; fi
}
