#!/usr/bin/env python3
"""Figures and tables for bench/run.sh, from its measurement records.

    run_report.py run RECORDS SITE RUN     one line for one round of a site (both tools)
    run_report.py site RECORDS SITE        the quillmere/wget ratios of a site over its rounds
    run_report.py summary RECORDS [TITLE]  size scaling, then a markdown table of every site
    run_report.py wget-log LOG             "URLS HTML": the URLs wget --spider -nv asked for, and
                                           the HTML pages among them

RECORDS holds one line per crawl, tab-separated:
    site  label  kind  size  run  tool  pages  html  requests  wall_s  user_s  sys_s  peak_kb  crawl_s  db_kb
kind is "disk" (a generated site on disk), "latency" or "docs"; size is the generated site's
page count ("-" for the docs). pages counts every URL a tool asked for (quillmere's "Pages
analysed" counts images and broken links too); html the HTML pages among them, "-" when the
tool does not tell; requests the HTTP requests the delaying proxy saw ("-" without it); crawl_s and db_kb are "-" for wget. Ratios are taken within a round (the two tools measured back to back, on the same machine
load), then their median and range over the rounds.
"""
import re
import statistics
import sys
from collections import OrderedDict


class Crawl:
    def __init__(self, fields):
        (self.site, self.label, self.kind, size, run, self.tool, pages, html, requests, wall, user,
         sys_, peak, crawl, db) = fields
        self.html = None if html == "-" else int(html)
        self.requests = None if requests == "-" else int(requests)
        self.size = None if size == "-" else int(size)
        self.run, self.pages = int(run), int(pages)
        self.wall, self.cpu = float(wall), float(user) + float(sys_)
        self.peak_mb = int(peak) / 1024
        self.crawl = None if crawl == "-" else float(crawl)
        self.db_mb = None if db == "-" else int(db) / 1024

    @property
    def rate(self):
        return self.pages / self.wall if self.wall > 0 else float("inf")

    @property
    def cpu_ms(self):
        return self.cpu / self.pages * 1000 if self.pages else float("nan")

    @property
    def wall_ms(self):
        return self.wall / self.pages * 1000 if self.pages else float("nan")


def load(path):
    sites = OrderedDict()  # site -> run -> tool -> Crawl
    with open(path) as f:
        for line in f:
            if line.strip():
                c = Crawl(line.rstrip("\n").split("\t"))
                sites.setdefault(c.site, OrderedDict()).setdefault(c.run, {})[c.tool] = c
    return sites


def num(x, digits=None):
    if x != x:
        return "n/a"
    if digits is None:
        digits = 0 if abs(x) >= 100 else 1 if abs(x) >= 10 else 2 if abs(x) >= 0.1 else 3
    return f"{x:,.{digits}f}"


def spread(values, digits=None, prefix=""):
    """"median (min-max)", or the one value."""
    values = [v for v in values if v == v]
    if not values:
        return "n/a"
    if len(values) == 1 or min(values) == max(values):
        return prefix + num(values[0], digits)
    return (f"{prefix}{num(statistics.median(values), digits)} "
            f"({prefix}{num(min(values), digits)}-{num(max(values), digits)})")


def pairs(runs):
    return [(r["quillmere"], r["wget"]) for r in runs.values() if "quillmere" in r and "wget" in r]


def wget_log(path):
    """Distinct URLs in a `wget --spider -r -nv` log: all of them, and the HTML pages."""
    html, other = set(), set()
    previous = ""
    with open(path, errors="replace") as f:
        for line in f:
            line = line.rstrip("\n")
            if m := re.search(r" URL:(\S+) \[[0-9/]+\] -> ", line):
                html.add(m.group(1))  # downloaded to read its links
            elif m := re.search(r" URL: (\S+) \d{3} ", line):
                other.add(m.group(1))  # only asked whether it exists
            elif line.startswith("Remote file does not exist") and previous.endswith(":"):
                other.add(previous[:-1])
            previous = line
    return len(html | other), len(html)


def describe(c):
    pages = f"{c.pages:,} pages" if c.html is None else f"{c.pages:,} URLs ({c.html:,} HTML)"
    text = (f"{c.tool} {pages} in {c.wall:.2f} s = {num(c.rate)} pages/s, "
            f"CPU {num(c.cpu_ms)} ms/page, wall {num(c.wall_ms)} ms/page, peak {c.peak_mb:.0f} MB")
    if c.requests is not None:
        text += f", {c.requests:,} requests ({num(c.requests / c.pages if c.pages else float('nan'))} a URL)"
    if c.crawl is not None:
        text += f" (crawl {c.crawl:.2f} s, database {c.db_mb:.1f} MB)"
    return text


def cmd_run(sites, site, run):
    r = sites[site][int(run)]
    q, w = r["quillmere"], r["wget"]
    print(f"  run {run}: {describe(q)}\n         {describe(w)}\n"
          f"         quillmere/wget: pages/s {num(q.rate / w.rate)}, CPU per page {num(q.cpu_ms / w.cpu_ms)}")


def cmd_site(sites, site):
    ps = pairs(sites[site])
    label = ps[0][0].label
    print(f"{label}, quillmere/wget over {len(ps)} run(s): pages/s {spread([q.rate / w.rate for q, w in ps])}, "
          f"CPU per page {spread([q.cpu_ms / w.cpu_ms for q, w in ps])}")


def scaling(sites):
    """Time per page at the largest generated site on disk over the smallest, round by round."""
    disk = []
    for site, runs in sites.items():
        first = next(iter(runs.values()))["quillmere"]
        if first.kind == "disk":
            disk.append((first.size, site))
    if len(disk) < 2:
        return None
    (n_small, small), (n_large, large) = min(disk), max(disk)
    if n_small == n_large:
        return None
    rounds = [k for k in sites[small] if k in sites[large]]
    out = {"small": n_small, "large": n_large}
    for tool in ("quillmere", "wget"):
        out[tool] = (
            [sites[large][k][tool].wall_ms / sites[small][k][tool].wall_ms for k in rounds],
            [sites[large][k][tool].cpu_ms / sites[small][k][tool].cpu_ms for k in rounds],
        )
    return out


def per_url(crawls):
    values = [c.requests / c.pages for c in crawls if c.requests is not None and c.pages]
    return spread(values) if values else "-"


def cmd_summary(sites, header):
    s = scaling(sites)
    if s:
        q_wall, q_cpu = s["quillmere"]
        w_wall, w_cpu = s["wget"]
        scale_line = (f"Time per page at {s['large']:,} pages / at {s['small']:,} pages: quillmere wall "
                      f"{spread(q_wall, 2, 'x')}, CPU {spread(q_cpu, 2, 'x')}; wget wall "
                      f"{spread(w_wall, 2, 'x')}, CPU {spread(w_cpu, 2, 'x')}")
        print(scale_line)
    print()
    print(header)
    print()
    proxied = any(c.requests is not None for runs in sites.values() for r in runs.values() for c in r.values())
    print("| site | URLs (quillmere / wget) | quillmere pages/s | wget pages/s | ratio pages/s | "
          "quillmere CPU ms/page | wget CPU ms/page | ratio CPU/page | quillmere peak MB |"
          + (" requests a URL (quillmere / wget) |" if proxied else ""))
    print("|---" * (10 if proxied else 9) + "|")
    for site, runs in sites.items():
        ps = pairs(runs)
        if not ps:
            continue
        qs, ws = [q for q, _ in ps], [w for _, w in ps]
        counts = lambda values: "/".join(f"{v:,}" for v in sorted(set(values)))
        pages = f"{counts(q.pages for q in qs)} / {counts(w.pages for w in ws)}"
        if all(w.html is not None for w in ws):
            pages += f" ({counts(w.html for w in ws)} HTML)"
        print(f"| {qs[0].label} | {pages} | {spread([q.rate for q in qs])} | {spread([w.rate for w in ws])} | "
              f"{spread([q.rate / w.rate for q, w in ps])} | {spread([q.cpu_ms for q in qs])} | "
              f"{spread([w.cpu_ms for w in ws])} | {spread([q.cpu_ms / w.cpu_ms for q, w in ps])} | "
              f"{spread([q.peak_mb for q in qs], 0)} |" + (f" {per_url(qs)} / {per_url(ws)} |" if proxied else ""))
    if s:
        print()
        print(scale_line + ".")


def main():
    if len(sys.argv) < 3:
        sys.exit(__doc__)
    mode = sys.argv[1]
    if mode == "wget-log":
        print(*wget_log(sys.argv[2]))
        return
    sites = load(sys.argv[2])
    if mode == "run":
        cmd_run(sites, sys.argv[3], sys.argv[4])
    elif mode == "site":
        cmd_site(sites, sys.argv[3])
    elif mode == "summary":
        cmd_summary(sites, sys.argv[3] if len(sys.argv) > 3 else "")
    else:
        sys.exit(__doc__)


if __name__ == "__main__":
    main()
