#!/usr/bin/env bash
# Measures how `pages --format csv` streams a large crawl: a crawl database of N pages
# (100,000 by default) is made with SQL, then the listing's first row time, total time and
# peak memory (GNU time's maximum resident set size) are printed.
#   bench/stream_pages.sh [N] [QUILLMERE]    QUILLMERE: the program (default build/release, else build/debug)
set -euo pipefail

pages="${1:-100000}"
root="$(cd "$(dirname "$0")/.." && pwd)"
program="${2:-}"
if [[ -z "$program" ]]; then
  for candidate in "$root/build/release/cli/quillmere" "$root/build/debug/cli/quillmere"; do
    [[ -x "$candidate" ]] && { program="$candidate"; break; }
  done
fi
[[ -x "$program" ]] || { echo "stream_pages.sh: no quillmere program found; build it first" >&2; exit 2; }
work="$(mktemp -d /tmp/quillmere-stream.XXXXXX)"
trap 'rm -rf "$work"' EXIT

export QUILLMERE_TRACE=0
"$program" --data-dir "$work" new big http://big.example/ >/dev/null
python3 - "$work/big.sqlite" "$pages" <<'PY'
import sqlite3, sys
db = sqlite3.connect(sys.argv[1])
n = int(sys.argv[2])
with db:
    for i in range(n):
        url = f"http://big.example/section-{i % 100}/page-{i}.html"
        db.execute("insert into Page(path,page,title,url,is_no_index,is_no_follow,is_canonical,in_link_count,"
                   "out_link_count,depth,weight) values(?,?,?,?,0,0,0,?,?,?,?)",
                   (f"/section-{i % 100}/", f"page-{i}.html", f"Page {i}, a title \"quoted\" of some length",
                    url, i % 17, 20, 1 + i % 6, (i % 17) / (1 + i % 6)))
        db.execute("insert into LinkHeaders(url,content_type,content_length,downloaded_length) values(?,?,?,?)",
                   (url, "text/html; charset=utf-8", 4000, 4000))
        db.execute("insert into FetchLog values(?,?,200,'','',?,0,'[]','2025-01-01T00:00:00.000Z')",
                   (url, url, i % 90))
db.close()
PY
echo "crawl database of $pages pages: $(du -h "$work/big.sqlite" | cut -f1)"

# First row: the time until the header and the first page have come out.
python3 - "$program" "$work" <<'PY'
import subprocess, sys, time
program, work = sys.argv[1], sys.argv[2]
start = time.monotonic()
proc = subprocess.Popen([program, "--data-dir", work, "pages", "big", "--format", "csv"], stdout=subprocess.PIPE)
proc.stdout.readline()
proc.stdout.readline()
first = time.monotonic() - start
rows = 1 + sum(1 for _ in proc.stdout)
proc.wait()
total = time.monotonic() - start
print(f"pages --format csv: first row after {first * 1000:.0f} ms, {rows} rows in {total:.2f} s")
PY

for args in "--format csv" "--format csv --sort weight:desc" "--format json"; do
  /usr/bin/time -f "%M" -o "$work/rss" "$program" --data-dir "$work" pages big $args >/dev/null
  echo "pages $args: peak RSS $(( $(cat "$work/rss") / 1024 )) MB"
done
