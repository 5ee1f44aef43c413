#!/usr/bin/env python3
"""Runs `quillmere crawl` and watches it: memory and progress over time, for bench/soak.sh.

    soak_monitor.py [--slice PAGES] [--interval S] [--work DIR] -- COMMAND [ARG ...]

The command's standard output goes to DIR/report, its progress lines (standard error, one
line a second when it is not a terminal: "<pages> pages  depth ...") to DIR/progress, each
prefixed with the second it arrived. Every INTERVAL seconds the process's VmRSS and VmHWM are
read from /proc with its CPU time, into DIR/memory. At the end this prints a table: RSS when the crawl reached
every multiple of SLICE pages, the time per page of each slice of SLICE pages (wall clock, and
the process's own CPU time, which other work on the machine does not change), RSS at the last
progress line (the vacuum's end; the report follows) and at the last sample,
the peak (VmHWM at exit, which the kernel also keeps for the report after the last sample),
and three ratios: RSS at the vacuum's end over RSS at SLICE pages, the peak over the same, and
the last full slice's time per page over the first's.

Exit status: the command's when it failed; 1 when the peak is above its target (--peak-mb MB
when given, else 1.2 times RSS at SLICE pages) or the last full slice's time per page is above
--flat times the first's (1.3 by default); 0 otherwise.
"""
import argparse
import bisect
import os
import re
import resource
import subprocess
import sys
import threading
import time

MEMORY_TARGET = 1.2
PAGES = re.compile(rb"^(\d+) pages\b")


def status_kb(pid):
    """VmRSS and VmHWM of a live process in kB; None for each that cannot be read."""
    rss = hwm = None
    try:
        with open(f"/proc/{pid}/status", "rb") as f:
            for line in f:
                if line.startswith(b"VmRSS:"):
                    rss = int(line.split()[1])
                elif line.startswith(b"VmHWM:"):
                    hwm = int(line.split()[1])
    except (FileNotFoundError, ProcessLookupError, ValueError):
        pass
    return rss, hwm


def cpu_seconds(pid):
    """User plus system CPU time of a live process so far; None when it cannot be read."""
    try:
        with open(f"/proc/{pid}/stat", "rb") as f:
            fields = f.read().rsplit(b")", 1)[1].split()
        return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")
    except (FileNotFoundError, ProcessLookupError, ValueError, IndexError):
        return None


def value_at(samples, when):
    """A sampled value at `when`, interpolated between the samples around it."""
    times = [t for t, _ in samples]
    i = bisect.bisect_left(times, when)
    if i == 0:
        return samples[0][1]
    if i >= len(samples):
        return samples[-1][1]
    (t0, v0), (t1, v1) = samples[i - 1], samples[i]
    return v0 + (v1 - v0) * (when - t0) / (t1 - t0) if t1 > t0 else v1


def crossing_time(progress, pages):
    """When the crawl reached `pages`, interpolated between the two progress lines around it."""
    counts = [p for _, p in progress]
    i = bisect.bisect_left(counts, pages)
    if i >= len(progress):
        return None
    t1, p1 = progress[i]
    if i == 0 or p1 == pages:
        return t1
    t0, p0 = progress[i - 1]
    return t0 + (t1 - t0) * (pages - p0) / (p1 - p0)


def rss_at(memory, when):
    """The RSS sample taken closest to `when`."""
    return min(memory, key=lambda s: abs(s[0] - when))[1]


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--slice", type=int, default=10000)
    parser.add_argument("--interval", type=float, default=0.25)
    parser.add_argument("--work", default=".")
    parser.add_argument("--peak-mb", type=float, default=None)
    parser.add_argument("--flat", type=float, default=1.3)
    parser.add_argument("command", nargs=argparse.REMAINDER)
    args = parser.parse_args()
    command = args.command[1:] if args.command[:1] == ["--"] else args.command
    if not command:
        parser.error("no command")

    report = open(os.path.join(args.work, "report"), "wb")
    start = time.monotonic()
    crawl = subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=report, stderr=subprocess.PIPE)

    progress = []  # (seconds since start, pages analysed), in order
    progress_log = open(os.path.join(args.work, "progress"), "wb")

    def read_progress():
        for line in crawl.stderr:
            now = time.monotonic() - start
            progress_log.write(f"{now:.3f} ".encode() + line)
            m = PAGES.match(line)
            if m:
                pages = int(m.group(1))
                if not progress or pages >= progress[-1][1]:
                    progress.append((now, pages))

    reader = threading.Thread(target=read_progress, daemon=True)
    reader.start()

    memory = []  # (seconds since start, VmRSS kB)
    cpu_time = [(0.0, 0.0)]  # (seconds since start, CPU seconds used)
    peak, peak_time = 0, 0.0  # VmHWM and when it last grew
    memory_log = open(os.path.join(args.work, "memory"), "w")
    while crawl.poll() is None:
        rss, hwm = status_kb(crawl.pid)
        cpu = cpu_seconds(crawl.pid)
        if rss is not None:
            now = time.monotonic() - start
            memory.append((now, rss))
            memory_log.write(f"{now:.3f} {rss} {hwm} {cpu}\n")
            if cpu is not None:
                cpu_time.append((now, cpu))
            if (hwm or 0) > peak:
                peak, peak_time = hwm, now
        time.sleep(args.interval)
    elapsed = time.monotonic() - start
    reader.join(timeout=5)
    progress_log.close()
    memory_log.close()
    report.close()
    # The crawl is this program's only child: its peak, counted by the kernel to the end.
    final_peak = max(peak, resource.getrusage(resource.RUSAGE_CHILDREN).ru_maxrss)

    if crawl.returncode != 0:
        print(f"the crawl failed (exit status {crawl.returncode}); its output is in {args.work}", file=sys.stderr)
        return crawl.returncode if crawl.returncode > 0 else 1
    if not progress or not memory:
        print("no progress or memory samples were taken", file=sys.stderr)
        return 1

    total = progress[-1][1]
    mb = lambda kb: f"{kb / 1024:.1f}"
    print(f"{'pages':>10}  {'seconds':>8}  {'RSS MB':>7}  {'ms/page in the slice':>20}  {'CPU ms/page':>11}")
    marks = list(range(args.slice, total + 1, args.slice))
    if not marks or marks[-1] != total:
        marks.append(total)
    slices, cpu_slices = [], []
    before_t, before_p = 0.0, 0
    for pages in marks:
        t = crossing_time(progress, pages)
        per_page = (t - before_t) / (pages - before_p) * 1000
        cpu_per_page = (value_at(cpu_time, t) - value_at(cpu_time, before_t)) / (pages - before_p) * 1000
        full = pages - before_p == args.slice
        if full:
            slices.append(per_page)
            cpu_slices.append(cpu_per_page)
        note = "" if full else f"  ({pages - before_p} pages)"
        print(f"{pages:>10,}  {t:>8.1f}  {mb(rss_at(memory, t)):>7}  {per_page:>20.3f}  {cpu_per_page:>11.3f}{note}")
        before_t, before_p = t, pages
    # The last progress line comes when the vacuum ends; the report is printed after it.
    vacuum_end = progress[-1][0]
    before_end = [m for m in memory if m[0] <= vacuum_end] or memory[:1]
    vacuum_rss = before_end[-1][1]
    print(f"{'vacuum':>10}  {vacuum_end:>8.1f}  {mb(vacuum_rss):>7}  (the last progress line, at the vacuum's end)")
    print(f"{'last':>10}  {memory[-1][0]:>8.1f}  {mb(memory[-1][1]):>7}  (the last sample; the program exited at {elapsed:.1f} s)")
    if final_peak > peak or peak_time > vacuum_end:
        when = "reached after the last progress line"
    else:
        counts = [p for _, p in progress]
        peak_pages = counts[max(0, bisect.bisect_right([t for t, _ in progress], peak_time) - 1)]
        when = f"reached at {peak_time:.1f} s, near {peak_pages:,} pages"
    print(f"{'peak':>10}  {'':>8}  {mb(final_peak):>7}  (VmHWM at exit, {when})")

    status = 0
    if total >= args.slice:
        first_rss = rss_at(memory, crossing_time(progress, args.slice))
        print(f"RSS at the vacuum's end / RSS at {args.slice:,} pages: {vacuum_rss / first_rss:.2f}")
        memory_ratio = final_peak / first_rss
        if args.peak_mb is None:
            verdict = "ok" if memory_ratio <= MEMORY_TARGET else "ABOVE TARGET"
            print(f"VmHWM at exit / RSS at {args.slice:,} pages: {memory_ratio:.2f} (target <= {MEMORY_TARGET}: {verdict})")
            if memory_ratio > MEMORY_TARGET:
                status = 1
        else:
            print(f"VmHWM at exit / RSS at {args.slice:,} pages: {memory_ratio:.2f}")
    if args.peak_mb is not None:
        verdict = "ok" if final_peak / 1024 <= args.peak_mb else "ABOVE TARGET"
        print(f"VmHWM at exit: {mb(final_peak)} MB (target <= {args.peak_mb:g} MB: {verdict})")
        if final_peak / 1024 > args.peak_mb:
            status = 1
    if len(slices) >= 2:
        ratio = slices[-1] / slices[0]
        verdict = "ok" if ratio <= args.flat else "ABOVE TARGET"
        print(f"time per page, last slice / first slice: {ratio:.2f} "
              f"({slices[-1]:.3f} ms / {slices[0]:.3f} ms; target <= {args.flat:g}: {verdict}); in CPU time: "
              f"{cpu_slices[-1] / cpu_slices[0]:.2f} ({cpu_slices[-1]:.3f} ms / {cpu_slices[0]:.3f} ms)")
        if ratio > args.flat:
            status = 1
    return status


if __name__ == "__main__":
    sys.exit(main())
