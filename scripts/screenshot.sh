#!/usr/bin/env bash
# Installs what is missing, builds the release tree with the desktop program, and takes a
# picture of its main window without a display: under a virtual X server, the program serves
# the demo site, crawls it, selects the page that receives the most links and saves the window.
#   scripts/screenshot.sh [OUT.png]          default docs/main-window.png
# Then the crawl map, the charts and the page panel, each after a crawl of its own, beside it.
# With QUILLMERE_TABS_DIR=DIR set, it also saves one picture per tab of the audit's tab bar
# in DIR (tab-N-NAME.png), from a crawl of its own.
set -euo pipefail
root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
out="${1:-$root/docs/main-window.png}"
"$root/scripts/install-deps.sh" --gui
"$root/scripts/build.sh" release -DQUILLMERE_BUILD_APP=ON -DQUILLMERE_BUILD_TESTS=OFF >/dev/null
mkdir -p "$(dirname "$out")"
out="$(cd "$(dirname "$out")" && pwd)/$(basename "$out")"
data="$(mktemp -d /tmp/quillmere-screenshot.XXXXXX)"
trap 'rm -rf "$data"' EXIT
# Chromium's start-up chatter is kept apart; it is shown only when the picture fails.
if ! QT_LOGGING_RULES="${QT_LOGGING_RULES:-qt.webenginecontext*=false}" \
    xvfb-run -a -s "-screen 0 1280x960x24" \
    "$root/build/release/tools/gui-harness/quillmere-gui-harness" --data-dir "$data" --screenshot "$out" >"$data/log" 2>&1; then
  cat "$data/log" >&2
  echo "screenshot.sh: no picture taken" >&2
  exit 1
fi
echo "Main window saved in $out"
if [ -n "${QUILLMERE_TABS_DIR:-}" ]; then
  mkdir -p "$QUILLMERE_TABS_DIR"
  rm -rf "$data/tabs" && mkdir -p "$data/tabs"
  if ! QT_LOGGING_RULES="${QT_LOGGING_RULES:-qt.webenginecontext*=false}" \
      xvfb-run -a -s "-screen 0 1280x960x24" \
      "$root/build/release/tools/gui-harness/quillmere-gui-harness" --data-dir "$data/tabs" \
      --screenshot-tabs "$QUILLMERE_TABS_DIR" >"$data/log" 2>&1; then
    cat "$data/log" >&2
    echo "screenshot.sh: no pictures of the tabs taken" >&2
    exit 1
  fi
  echo "Tabs saved in $QUILLMERE_TABS_DIR"
fi
# The crawl map, the charts and the page panel beside the main window's picture, in its
# folder: crawl-map.png (the README's), charts.png, page-panel.png.
for picture in map charts page; do
  case "$picture" in
    map) file="$(dirname "$out")/crawl-map.png" ;;
    charts) file="$(dirname "$out")/charts.png" ;;
    page) file="$(dirname "$out")/page-panel.png" ;;
  esac
  rm -rf "$data/$picture" && mkdir -p "$data/$picture"
  if ! QT_LOGGING_RULES="${QT_LOGGING_RULES:-qt.webenginecontext*=false}" \
      xvfb-run -a -s "-screen 0 1280x960x24" \
      "$root/build/release/tools/gui-harness/quillmere-gui-harness" --data-dir "$data/$picture" \
      "--screenshot-$picture" "$file" >"$data/log" 2>&1; then
    cat "$data/log" >&2
    echo "screenshot.sh: no picture of the $picture taken" >&2
    exit 1
  fi
  echo "The $picture saved in $file"
done
