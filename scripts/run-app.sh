#!/usr/bin/env bash
# Installs what is missing, builds the release tree with the desktop program and opens its
# window. With no arguments it serves the built-in demo site and opens the project 'demo' on
# it, in the demo's data directory as scripts/run-demo.sh does (quillmere-gui --data-dir
# build/demo-data --demo); any arguments are passed to quillmere-gui instead.
#   scripts/run-app.sh [quillmere-gui arguments...]
# The window needs a display; scripts/screenshot.sh shows it without one.
set -euo pipefail
root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
"$root/scripts/install-deps.sh" --gui
"$root/scripts/build.sh" release -DQUILLMERE_BUILD_APP=ON -DQUILLMERE_BUILD_TESTS=OFF
if [ -z "${DISPLAY:-}" ] && [ -z "${WAYLAND_DISPLAY:-}" ]; then
  echo "run-app.sh: no display (DISPLAY is not set): the desktop window needs one." >&2
  echo "  Run this from a graphical session, or see the window headless with scripts/screenshot.sh." >&2
  exit 1
fi
if [ $# -eq 0 ]; then
  data="${QUILLMERE_DATA_DIR:-$root/build/demo-data}"
  mkdir -p "$data"
  set -- --data-dir "$data" --demo
fi
exec "$root/build/release/app/quillmere-gui" "$@"
