#!/usr/bin/env bash
# The same crawl from the command line and from the desktop window: a generated site of N pages
# (20,000 by default) served by nginx on 127.0.0.1, crawled RUNS times each way (3 by default),
# the two ways taking turns and swapping which goes first from one round to the next.
#   bench/gui_vs_cli.sh [N] [RUNS]
# The command line's time is the wall time of `quillmere crawl NAME` (crawl, vacuum, report);
# the window's is the time from the start button to the end of the vacuum, measured by
# `quillmere-gui-harness --bench-crawl NAME` (the window driven by a tool of its own) under a virtual X server, which also reports the longest
# gap between two paint events of its windows and the longest gap between two ticks of a 5 ms
# timer while the crawl runs. Prints each run, then the ranges and the window/command-line ratio.
set -euo pipefail
root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
n="${1:-20000}"
runs="${2:-3}"

"$root/scripts/install-deps.sh" --bench --gui
"$root/scripts/build.sh" release -DQUILLMERE_BUILD_APP=ON -DQUILLMERE_BUILD_TESTS=OFF >/dev/null
quillmere="$root/build/release/cli/quillmere"
gui="$root/build/release/tools/gui-harness/quillmere-gui-harness"
source "$root/bench/lib.sh"

site="$work/site"
python3 "$root/bench/generate_site.py" "$n" "$site" "$host"
start_nginx "$site"

new_project() {  # data directory
  rm -rf "$1"
  "$quillmere" --data-dir "$1" new bench "http://$host" >/dev/null
}

run_cli() {
  local data="$work/data-cli"
  new_project "$data"
  /usr/bin/time -f '%e' -o "$work/cli-time" "$quillmere" --data-dir "$data" crawl bench >"$work/cli-report" 2>/dev/null
  local pages
  pages=$(sed -n 's/^Pages analysed: \([0-9]*\).*/\1/p' "$work/cli-report")
  cli_secs=$(tail -n 1 "$work/cli-time")
  echo "  command line: $pages pages in $(seconds "$cli_secs") s"
}

run_gui() {
  local data="$work/data-gui"
  new_project "$data"
  if ! QT_LOGGING_RULES="qt.webenginecontext*=false" xvfb-run -a -s "-screen 0 1280x960x24" \
      "$gui" --data-dir "$data" --bench-crawl bench >"$work/gui-out" 2>"$work/gui-log"; then
    cat "$work/gui-log" >&2
    echo "gui_vs_cli.sh: the window's crawl failed" >&2
    exit 1
  fi
  local line
  line=$(grep '^bench-crawl ' "$work/gui-out")
  gui_pages=$(sed 's/.* pages=\([0-9]*\).*/\1/' <<<"$line")
  gui_secs=$(sed 's/.* seconds=\([0-9.]*\).*/\1/' <<<"$line")
  gui_paint=$(sed 's/.* max_paint_gap_ms=\([0-9]*\).*/\1/' <<<"$line")
  gui_tick=$(sed 's/.* max_tick_gap_ms=\([0-9]*\).*/\1/' <<<"$line")
  echo "  window:       $gui_pages pages in $(seconds "$gui_secs") s, longest paint gap $gui_paint ms, longest tick gap $gui_tick ms"
}

rows=()
for i in $(seq "$runs"); do
  echo "round $i/$runs (N=$n)"
  if [ $((i % 2)) -eq 1 ]; then run_cli; run_gui; else run_gui; run_cli; fi
  rows+=("$cli_secs $gui_secs $gui_paint $gui_tick")
done
stop_nginx

python3 - "$n" "${rows[@]}" <<'PY'
import sys
n = int(sys.argv[1])
rows = [tuple(map(float, r.split())) for r in sys.argv[2:]]
def rng(values, fmt):
    return fmt.format(min(values)) if min(values) == max(values) else (fmt + " to " + fmt).format(min(values), max(values))
cli = [r[0] for r in rows]; gui = [r[1] for r in rows]
ratios = [g / c for c, g in zip(cli, gui)]
print(f"N={n}, {len(rows)} rounds: command line {rng(cli, '{:.2f}')} s, window {rng(gui, '{:.2f}')} s, "
      f"ratio window/command line {rng(ratios, '{:.2f}')}; "
      f"longest paint gap {rng([r[2] for r in rows], '{:.0f}')} ms, longest tick gap {rng([r[3] for r in rows], '{:.0f}')} ms")
PY
