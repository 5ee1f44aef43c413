#!/usr/bin/env python3
"""The truly broken links of an HTML tree on disk, as a browser would see it served.

    bench/disk_links.py ROOT BASE_URL [--start PATH] [--all-files] [-o FILE]

ROOT is served at BASE_URL (for instance http://127.0.0.1:8080/ by nginx with "index
index.html"). From the start page (BASE_URL itself unless --start names another path), the
pages a browser can navigate to are read the way a browser reads them, and every internal link
they hold is looked up on disk:

  - links: a and area href; link href (every rel but canonical); img src and srcset; source src
    and srcset; script, iframe, frame, embed, video, audio, track, input type=image src; video
    poster; object data; the URL of a meta refresh; url() and @import in style attributes and
    <style> blocks;
  - references cleaned as browsers do (blanks around stripped, tabs and line breaks inside
    removed) and resolved by RFC 3986 against <base href> or the page URL;
  - only http and https URLs of the same scheme, host and port are internal; other schemes and
    hosts are left alone;
  - a target is broken when no file answers it: the file is missing, or it is a directory
    without index.html. The query is ignored (a static server ignores it);
  - pages read further: every target that is an .html or .htm file (served as HTML), whatever
    the tag that named it; a directory named without its final "/" only through a, area, iframe,
    frame or meta refresh, which follow the server's redirect to "DIR/";
  - a link to a page with a fragment is checked against the target's id attributes and
    <a name>: "" and "top" always exist.

--all-files reads every .html file under ROOT instead of only those reachable.

Prints JSON: {"base", "pages", "links", "broken": [{"url", "kind", "linkedFrom": [{"url",
"tag", "attribute"}]}], "fragments": [{"url", "fragment", "linkedFrom": [...]}]}; kind is "page"
for a target navigated to, "resource" otherwise. Python 3 standard library only: an
independent model to compare a crawler with.
"""
import argparse
import json
import os
import re
import sys
from collections import OrderedDict, deque
from html.parser import HTMLParser
from urllib.parse import unquote, urldefrag, urljoin, urlsplit

NAVIGATIONAL = {"a", "area", "iframe", "frame", "meta"}
SRC_TAGS = {"script", "iframe", "frame", "embed", "video", "audio", "track", "img", "source"}
BLANKS = " \t\n\f\r"
CSS_URL = re.compile(r"""url\(\s*(?:"([^"]*)"|'([^']*)'|([^)'"\s]*))\s*\)""", re.I)
CSS_IMPORT = re.compile(r"""@import\s+(?:"([^"]*)"|'([^']*)')""", re.I)


def clean(reference):
    return re.sub("[\t\n\r]", "", reference.strip(BLANKS))


def browser_join(base, reference):
    """urljoin, and a backslash read as a slash, as browsers do in http and https URLs."""
    scheme = urlsplit(reference).scheme.lower() if ":" in reference else ""
    if scheme in ("", "http", "https") and "\\" in reference:
        head, sep, fragment = reference.partition("#")
        reference = head.replace("\\", "/") + sep + fragment
    return urljoin(base, reference)


def srcset_urls(value):
    """The candidate URLs of a srcset, as the HTML standard splits them (commas may be inside)."""
    urls, i, n = [], 0, len(value)
    while i < n:
        while i < n and (value[i] in BLANKS or value[i] == ","):
            i += 1
        if i >= n:
            break
        start = i
        while i < n and value[i] not in BLANKS:
            i += 1
        url = value[start:i]
        if url.endswith(","):
            url = url.rstrip(",")
        else:
            depth = 0
            while i < n:
                c = value[i]
                if c == "(":
                    depth += 1
                elif c == ")" and depth:
                    depth -= 1
                elif c == "," and not depth:
                    i += 1
                    break
                i += 1
        if url:
            urls.append(url)
    return urls


def refresh_url(content):
    """The URL of a meta refresh's content ("5; url=x.html"), or None."""
    m = re.match(r"\s*[0-9.]*\s*[;,]?\s*(?:url\s*=\s*)?(.*)$", content, re.I | re.S)
    if not m:
        return None
    url = m.group(1).strip(BLANKS)
    if url[:1] in ("'", '"'):
        quote = url[0]
        url = url[1:]
        if quote in url:
            url = url[: url.index(quote)]
    return url or None


def css_urls(text):
    for m in CSS_URL.finditer(text):
        yield next(g for g in m.groups() if g is not None)
    for m in CSS_IMPORT.finditer(text):
        yield next(g for g in m.groups() if g is not None)


class PageReader(HTMLParser):
    """Links, base and fragment names of one page."""

    def __init__(self):
        super().__init__(convert_charrefs=True)
        self.base = None
        self.refs = []  # (tag, attribute, reference as written)
        self.ids = set()
        self.in_style = False

    def handle_starttag(self, tag, attrs):
        a = {}
        for k, v in attrs:
            a.setdefault(k, v if v is not None else "")
        if "id" in a:
            self.ids.add(a["id"])
        if tag == "a" and "name" in a:
            self.ids.add(a["name"])
        if "style" in a:
            for ref in css_urls(a["style"]):
                self.refs.append((tag, "style", ref))
        if tag == "base" and self.base is None and "href" in a:
            self.base = a["href"]
        if tag in ("a", "area") and "href" in a:
            self.refs.append((tag, "href", a["href"]))
        if tag == "link" and "href" in a:
            if "canonical" not in (a.get("rel") or "").lower().split():
                self.refs.append((tag, "href", a["href"]))
        if tag in SRC_TAGS or (tag == "input" and (a.get("type") or "").lower() == "image"):
            if "src" in a:
                self.refs.append((tag, "src", a["src"]))
        if tag in ("img", "source") and "srcset" in a:
            for ref in srcset_urls(a["srcset"]):
                self.refs.append((tag, "srcset", ref))
        if tag == "video" and "poster" in a:
            self.refs.append((tag, "poster", a["poster"]))
        if tag == "object" and "data" in a:
            self.refs.append((tag, "data", a["data"]))
        if tag == "meta" and (a.get("http-equiv") or "").lower() == "refresh" and "content" in a:
            ref = refresh_url(a["content"])
            if ref:
                self.refs.append((tag, "content", ref))
        if tag == "style":
            self.in_style = True

    def handle_startendtag(self, tag, attrs):
        self.handle_starttag(tag, attrs)
        if tag == "style":
            self.in_style = False

    def handle_endtag(self, tag):
        if tag == "style":
            self.in_style = False

    def handle_data(self, data):
        if self.in_style:
            for ref in css_urls(data):
                self.refs.append(("style", "", ref))


def read_text(path):
    with open(path, "rb") as f:
        data = f.read()
    try:
        return data.decode("utf-8")
    except UnicodeDecodeError:
        return data.decode("latin-1")


class Tree:
    def __init__(self, root, base_url):
        self.root = os.path.realpath(root)
        self.base = base_url if base_url.endswith("/") else base_url + "/"
        parts = urlsplit(self.base)
        self.origin = (parts.scheme.lower(), parts.hostname, parts.port or {"http": 80, "https": 443}[parts.scheme.lower()])
        self.base_path = parts.path
        self.pages = {}  # file path -> PageReader

    def internal(self, url):
        parts = urlsplit(url)
        scheme = parts.scheme.lower()
        if scheme not in ("http", "https"):
            return False
        try:
            port = parts.port or {"http": 80, "https": 443}[scheme]
        except ValueError:
            return False
        return (scheme, parts.hostname, port) == self.origin

    def file_of(self, url):
        """The file a static server answers for url, or None (missing, or directory without index)."""
        path = unquote(urlsplit(url).path, errors="surrogateescape")
        if not path.startswith(self.base_path):
            return None
        rel = path[len(self.base_path):]
        if ".." in rel.split("/"):
            return None
        disk = os.path.join(self.root, rel)
        if os.path.isdir(disk):
            disk = os.path.join(disk, "index.html")
        return disk if os.path.isfile(disk) else None

    def url_of(self, disk):
        rel = os.path.relpath(disk, self.root).replace(os.sep, "/")
        return urljoin(self.base, rel)

    def read(self, disk):
        if disk not in self.pages:
            reader = PageReader()
            try:
                reader.feed(read_text(disk))
                reader.close()
            except Exception as e:  # an unreadable page reads as no links
                print(f"disk_links: {disk}: {e}", file=sys.stderr)
            self.pages[disk] = reader
        return self.pages[disk]


def is_html(disk):
    return disk.lower().endswith((".html", ".htm"))


def normalise(url):
    """Scheme and host in lower case, "" path made "/": the form two links to one target share."""
    parts = urlsplit(url)
    path = parts.path or "/"
    netloc = parts.netloc.lower()
    out = f"{parts.scheme.lower()}://{netloc}{path}"
    if parts.query:
        out += "?" + parts.query
    return out


def main():
    ap = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    ap.add_argument("root")
    ap.add_argument("base_url")
    ap.add_argument("--start", default="")
    ap.add_argument("--all-files", action="store_true")
    ap.add_argument("-o", "--output")
    args = ap.parse_args()

    tree = Tree(args.root, args.base_url)
    start_url = urljoin(tree.base, args.start)
    broken = OrderedDict()  # url -> {"kind", "linkedFrom"}
    fragments = OrderedDict()  # (url, fragment) -> linkedFrom
    wanted = []  # (target url, fragment, source) checked once every page is read
    links = 0

    # Pages are told apart by URL, as a crawler tells them: "/" and "/index.html" are two pages
    # of one file, and the links of each are links.
    queue = deque()  # (page URL, file)
    seen = set()
    if args.all_files:
        for dirpath, dirnames, filenames in os.walk(tree.root):
            dirnames.sort()
            for name in sorted(filenames):
                if is_html(name):
                    disk = os.path.join(dirpath, name)
                    queue.append((tree.url_of(disk), disk))
        seen.update(url for url, _ in queue)
    else:
        first = tree.file_of(start_url)
        if first is None:
            print(f"disk_links: nothing answers {start_url}", file=sys.stderr)
            return 1
        start_url = normalise(start_url)
        queue.append((start_url, first))
        seen.add(start_url)

    while queue:
        page_url, disk = queue.popleft()
        reader = tree.read(disk)
        base = browser_join(page_url, clean(reader.base)) if reader.base is not None else page_url
        for tag, attribute, raw in reader.refs:
            ref = clean(raw)
            if not ref and not (tag in ("a", "area") and attribute == "href"):
                continue
            try:
                target = browser_join(base, ref)
            except ValueError:
                continue
            url, fragment = urldefrag(target)
            if not tree.internal(url):
                continue
            url = normalise(url)
            links += 1
            source = {"url": page_url, "tag": tag, "attribute": attribute}
            found = tree.file_of(url)
            navigational = tag in NAVIGATIONAL
            if found is None:
                entry = broken.setdefault(url, {"kind": "page" if navigational else "resource", "linkedFrom": []})
                if source not in entry["linkedFrom"]:
                    entry["linkedFrom"].append(source)
                continue
            # A directory asked without its "/" is sent to it: the page is the one with the "/".
            redirected = os.path.isdir(os.path.join(tree.root, unquote(urlsplit(url).path)[len(tree.base_path):])) \
                and not urlsplit(url).path.endswith("/")
            if redirected:
                url = url.split("?")[0] + "/"
            # An HTML file is a page of the site whatever named it (a, iframe, link rel=next...);
            # a redirect is followed from a link to navigate only.
            if is_html(found) and (navigational or not redirected) and url not in seen:
                seen.add(url)
                queue.append((url, found))
            if "#" in target and navigational and is_html(found):
                wanted.append((url, found, unquote(fragment), source))

    for url, found, fragment, source in wanted:
        if fragment in ("", "top"):
            continue
        if fragment not in tree.read(found).ids:
            entry = fragments.setdefault((url, fragment), [])
            if source not in entry:
                entry.append(source)

    out = {
        "base": tree.base,
        "pages": len(seen),
        "links": links,
        "broken": [{"url": u, **v} for u, v in broken.items()],
        "fragments": [{"url": u, "fragment": f, "linkedFrom": s} for (u, f), s in fragments.items()],
    }
    text = json.dumps(out, indent=1, ensure_ascii=False)
    if args.output:
        with open(args.output, "w", encoding="utf-8") as f:
            f.write(text + "\n")
    else:
        print(text)
    return 0


if __name__ == "__main__":
    sys.exit(main())
