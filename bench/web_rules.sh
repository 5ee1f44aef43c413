#!/usr/bin/env bash
# The web rules on real HTML trees: are the broken links they report the true ones, and what
# do they cost next to the classic rules and wget?
#   bench/web_rules.sh [--runs K] [--no-timing] [TREE ...]
# TREE: a directory of HTML files, or postgres, python, sqlite for the manuals Debian ships
# (postgresql-doc-15, python3-doc, sqlite3-doc; postgres alone by default, "all" for the three).
# Each tree is served by nginx on 127.0.0.1; then
#   1. bench/disk_links.py reads the tree on disk as a browser would see it served, and
#      `quillmere crawl-url URL --rules web --no-external` crawls it; `broken --format csv`
#      (kinds page and resource) and `fragments --format csv` are compared with the model:
#      found / reported wrongly / missed;
#   2. K rounds (3 by default) of the web rules, the classic rules and
#      `wget --spider -r -p -nv`, each on the same server: requests a second (counted in
#      nginx's access log) and CPU seconds a request, median and range.
# QUILLMERE=path/to/quillmere skips the build and uses that program.
set -euo pipefail
root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"

usage() { sed -n '2,/^set -euo/p' "$0" | sed '$d; s/^# \{0,1\}//' >&2; exit 2; }
runs=3
timing=1
trees=()
while [ $# -gt 0 ]; do
  case "$1" in
    --runs) runs="${2:?--runs needs a count}"; shift ;;
    --no-timing) timing=0 ;;
    -h|--help) usage ;;
    all) trees+=(postgres python sqlite) ;;
    -*) echo "web_rules.sh: unknown option $1" >&2; usage ;;
    *) trees+=("$1") ;;
  esac
  shift
done
[ ${#trees[@]} -eq 0 ] && trees=(postgres)
[[ "$runs" =~ ^[1-9][0-9]*$ ]] || { echo "web_rules.sh: --runs wants a positive count" >&2; exit 2; }

tree_dir() {
  case "$1" in
    postgres) echo /usr/share/doc/postgresql-doc-15/html ;;
    python) readlink -f /usr/share/doc/python3-doc/html ;;
    sqlite) echo /usr/share/doc/sqlite3 ;;
    *) echo "$1" ;;
  esac
}

"$root/scripts/install-deps.sh" --bench
if [ -z "${QUILLMERE:-}" ]; then
  if ! out=$("$root/scripts/build.sh" release -DQUILLMERE_BUILD_TESTS=OFF 2>&1); then
    printf '%s\n' "$out" | tail -n 40 >&2
    echo "web_rules.sh: the release build failed" >&2
    exit 1
  fi
fi
quillmere="${QUILLMERE:-$root/build/release/cli/quillmere}"
if ! "$quillmere" crawl-url --help 2>&1 | grep -q -- '--rules'; then
  echo "web_rules.sh: this quillmere has no crawl-url --rules option" >&2
  exit 2
fi

source "$root/bench/lib.sh"
access_log="$work/nginx/logs/access.log"

# nginx as bench/lib.sh runs it, but with every usual content type and an access log: its lines
# are the requests a crawl made.
start_logging_nginx() {  # site directory
  mkdir -p "$work/nginx/logs"
  cat > "$work/nginx/nginx.conf" <<CONF
worker_processes 1;
daemon off;
user root;
error_log $work/nginx/logs/error.log warn;
pid $work/nginx/nginx.pid;
events { worker_connections 1024; }
http {
  include /etc/nginx/mime.types;
  default_type application/octet-stream;
  access_log $access_log;
  keepalive_timeout 30;
  server {
    listen 127.0.0.1:$port;
    root $1;
    index index.html;
  }
}
CONF
  nginx -c "$work/nginx/nginx.conf" -p "$work/nginx" &
  nginx_pid=$!
  for _ in $(seq 50); do curl -sf -o /dev/null "http://$host/" && return 0; sleep 0.1; done
  echo "nginx did not start" >&2; exit 1
}
requests_so_far() { [ -f "$access_log" ] && wc -l <"$access_log" || echo 0; }

# One timed run: appends "tool requests wall user sys" to $records.
timed_run() {  # tool, command...
  local tool="$1"; shift
  local before after wall user sys
  before=$(requests_so_far)
  /usr/bin/time -f '%e %U %S' -o "$work/time" "$@" >"$work/run.out" 2>"$work/run.err" || true
  sleep 0.2   # nginx writes its log line after the answer
  after=$(requests_so_far)
  read -r wall user sys < <(tail -n 1 "$work/time")
  printf '%s\t%s\t%s\t%s\t%s\n' "$tool" $((after - before)) "$wall" "$user" "$sys" >>"$records"
}

crawl() {  # rules, data directory
  rm -rf "$2"
  "$quillmere" --data-dir "$2" crawl-url "$start_url" --name site --rules "$1" \
    $([ "$1" = web ] && echo --no-external)
}

for tree in "${trees[@]}"; do
  dir=$(tree_dir "$tree")
  if [ ! -f "$dir/index.html" ]; then
    echo "web_rules.sh: $dir/index.html is missing" >&2
    exit 1
  fi
  start_logging_nginx "$dir"
  start_url="http://$host/"
  echo "$tree: $dir ($(find "$dir" -name '*.htm*' | wc -l) HTML files) at $start_url"

  python3 "$root/bench/disk_links.py" "$dir" "$start_url" -o "$work/truth.json"
  data="$work/data-web"
  crawl web "$data" >"$work/web.out" 2>"$work/web.err" || true
  if ! "$quillmere" --data-dir "$data" broken site --format csv >"$work/broken.csv" 2>"$work/broken.err"; then
    tail -n 5 "$work/web.err" "$work/broken.err" >&2
    echo "web_rules.sh: no broken links could be read from the web crawl" >&2
    exit 1
  fi
  "$quillmere" --data-dir "$data" fragments site --format csv >"$work/fragments.csv" 2>/dev/null || rm -f "$work/fragments.csv"
  python3 "$root/bench/web_rules_report.py" compare "$work/truth.json" "$work/broken.csv" \
    $([ -f "$work/fragments.csv" ] && echo "$work/fragments.csv")

  if [ "$timing" = 1 ]; then
    records="$work/records.tsv"
    : >"$records"
    for round in $(seq "$runs"); do
      # Each tool goes first in turn, so that none always meets a cold cache.
      order=(web classic wget)
      for _ in $(seq $(((round - 1) % 3))); do order=("${order[@]:1}" "${order[0]}"); done
      for tool in "${order[@]}"; do
        case "$tool" in
          web) timed_run "web rules" crawl web "$work/data-time" ;;
          classic) timed_run "classic rules" crawl classic "$work/data-time" ;;
          wget) rm -rf "$work/wget"
                timed_run "wget" wget --spider -r -p -nv -l inf -P "$work/wget" "$start_url" ;;
        esac
      done
    done
    echo "timing, $runs round(s), $(nproc) cores:"
    python3 "$root/bench/web_rules_report.py" runs "$records"
  fi
  stop_nginx
  echo
done
