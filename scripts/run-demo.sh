#!/usr/bin/env bash
# Installs what is missing, builds the release tree and runs the main job: a headless crawl
# of the demo site that ships inside the program, then its report.
set -euo pipefail
root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
"$root/scripts/install-deps.sh"
"$root/scripts/build.sh" release -DQUILLMERE_BUILD_TESTS=OFF -DQUILLMERE_BUILD_BENCH=OFF -DQUILLMERE_BUILD_APP=OFF
data="${QUILLMERE_DATA_DIR:-$root/build/demo-data}"
mkdir -p "$data"
exec "$root/build/release/cli/quillmere" --data-dir "$data" demo
