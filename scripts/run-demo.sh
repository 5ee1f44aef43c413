#!/usr/bin/env bash
# Installs what is missing, builds the release tree and runs the main job: a headless crawl
# of the demo site that ships inside the program, then its report.
set -euo pipefail
root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
"$root/scripts/install-deps.sh"
"$root/scripts/build.sh" release
data="${QUILLMERE_DATA_DIR:-$root/build/demo-data}"
mkdir -p "$data"
q="$root/build/release/cli/quillmere"
"$q" --data-dir "$data" delete demo >/dev/null 2>&1 || true
"$q" --data-dir "$data" new demo "http://127.0.0.1/" --depth 5
"$q" --data-dir "$data" projects
