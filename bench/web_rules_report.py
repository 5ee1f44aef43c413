#!/usr/bin/env python3
"""Reports for bench/web_rules.sh (Python 3 standard library only).

    web_rules_report.py compare TRUTH.json BROKEN.csv [FRAGMENTS.csv]
        quillmere's `broken --format csv` (kinds page and resource) against disk_links.py's
        JSON: found / reported wrongly / missed, by URL and by (URL, linking page); the same for
        `fragments --format csv` when given. Exit status 0 even when they differ.
    web_rules_report.py runs RECORDS.tsv
        RECORDS: lines "tool<TAB>requests<TAB>wall<TAB>user<TAB>sys"; prints, per tool, requests
        a second and CPU seconds a request: median and range over the runs.
"""
import csv
import json
import statistics
import sys
from urllib.parse import unquote, urlsplit


def key(url):
    """One form for one target: scheme and host in lower case, path and query percent-decoded."""
    p = urlsplit(url.strip())
    path = unquote(p.path or "/")
    out = f"{p.scheme.lower()}://{p.netloc.lower()}{path}"
    return out + ("?" + unquote(p.query) if p.query else "")


def rows(path):
    with open(path, newline="", encoding="utf-8") as f:
        return list(csv.DictReader(f))


def show(label, truth, reported, examples=5):
    found = truth & reported
    wrong = sorted(reported - truth)
    missed = sorted(truth - reported)
    print(f"  {label}: found {len(found)} of {len(truth)}, reported wrongly {len(wrong)}, missed {len(missed)}")
    for name, items in (("wrongly", wrong), ("missed", missed)):
        for item in items[:examples]:
            print(f"    {name}: {' <- '.join(item) if isinstance(item, tuple) else item}")
        if len(items) > examples:
            print(f"    {name}: ... {len(items) - examples} more")


def compare(truth_path, broken_csv, fragments_csv=None):
    truth = json.load(open(truth_path, encoding="utf-8"))
    true_urls = {key(b["url"]) for b in truth["broken"]}
    true_pairs = {(key(b["url"]), key(s["url"])) for b in truth["broken"] for s in b["linkedFrom"]}
    reported = [r for r in rows(broken_csv) if r.get("kind") in ("page", "resource")]
    others = [r for r in rows(broken_csv) if r.get("kind") not in ("page", "resource")]
    print(f"disk model: {truth['pages']} pages, {truth['links']} internal links, "
          f"{len(true_urls)} broken targets, {len(truth['fragments'])} broken fragments")
    show("broken targets", true_urls, {key(r["url"]) for r in reported})
    show("broken (target, linking page)", true_pairs, {(key(r["url"]), key(r["sourceUrl"])) for r in reported})
    if others:
        print(f"  rows of another kind (external...): {len(others)}")
    if fragments_csv:
        true_fragments = {(key(f["url"]), f["fragment"]) for f in truth["fragments"]}
        got = {(key(r["url"]), r["fragment"]) for r in rows(fragments_csv)}
        show("broken fragments", true_fragments, got)


def runs(records_path):
    by_tool = {}
    with open(records_path, encoding="utf-8") as f:
        for line in f:
            tool, requests, wall, user, sys_ = line.split("\t")
            by_tool.setdefault(tool, []).append((int(requests), float(wall), float(user) + float(sys_)))

    def span(values, fmt):
        return f"{fmt(statistics.median(values))} ({fmt(min(values))} to {fmt(max(values))})"

    # wget --spider asks for each page twice (HEAD, then GET): the time the whole tree takes
    # and the CPU it costs, beside the per-request figures, compare the work done for a user.
    print(f"  {'tool':<16} {'runs':>4} {'requests':>9}   requests/s median (range)      CPU ms/request median (range)"
          f"   seconds for the tree median (range)   CPU s for the tree median (range)")
    for tool, items in by_tool.items():
        rates = [r / w if w else 0.0 for r, w, _ in items]
        cpu = [c * 1000 / r if r else 0.0 for r, _, c in items]
        requests = span([r for r, _, _ in items], lambda v: f"{v:.0f}")
        print(f"  {tool:<16} {len(items):>4} {requests:>9}   {span(rates, lambda v: f'{v:.0f}'):<30} "
              f"{span(cpu, lambda v: f'{v:.3f}'):<32} {span([w for _, w, _ in items], lambda v: f'{v:.2f}'):<37} "
              f"{span([c for _, _, c in items], lambda v: f'{v:.2f}')}")


def main(argv):
    if len(argv) >= 3 and argv[0] == "compare":
        compare(*argv[1:4])
    elif len(argv) == 2 and argv[0] == "runs":
        runs(argv[1])
    else:
        print(__doc__, file=sys.stderr)
        return 2
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
