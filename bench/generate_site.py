#!/usr/bin/env python3
"""Writes a static test site of N pages for the crawl benchmark.

Pages live in folders of 100 (/sec<k>/page<i>.html) and link to each other in every form a
crawler meets: relative, "./", "../", root-absolute, absolute URLs, with fragments and
queries; plus images, a few broken links, mailto/javascript/external links, noindex pages and
pages that name another page as canonical.
"""
import os
import random
import sys


def page_path(i):
    return "/" if i == 0 else f"/sec{i // 100}/page{i}.html"


def href(src, dst, host, rnd):
    target = page_path(dst)
    if dst == 0:
        return rnd.choice(["/", f"http://{host}/", "/index.html"])
    form = rnd.randrange(6)
    same_dir = src != 0 and src // 100 == dst // 100
    if form == 0 and same_dir:
        return f"page{dst}.html"
    if form == 1 and same_dir:
        return f"./page{dst}.html"
    if form == 2 and src != 0:
        return f"../sec{dst // 100}/page{dst}.html"
    if form == 3:
        return f"http://{host}{target}"
    if form == 4:
        return f"{target}#section"
    return target


def main():
    if len(sys.argv) != 4:
        sys.exit("usage: generate_site.py N OUTPUT_DIR HOST:PORT")
    n, out, host = int(sys.argv[1]), sys.argv[2], sys.argv[3]
    rnd = random.Random(20261121)
    os.makedirs(os.path.join(out, "img"), exist_ok=True)
    png = bytes.fromhex("89504e470d0a1a0a0000000d4948445200000001000000010806000000"
                        "1f15c4890000000d49444154789c6360000002000154a24f5d0000000049454e44ae426082")
    for k in range(max(1, n // 50)):
        with open(os.path.join(out, "img", f"img{k}.png"), "wb") as f:
            f.write(png)
    for i in range(n):
        links = []
        for child in (2 * i + 1, 2 * i + 2):  # a binary tree reaches every page
            if child < n:
                links.append(child)
        links.append(i // 2)
        if i + 1 < n:
            links.append(i + 1)
        links.append(0)
        links += [rnd.randrange(n) for _ in range(4)]
        anchors = [f'<a href="{href(i, d, host, rnd)}">Page {d}</a>' for d in links]
        if i % 5 == 0:
            k = (i // 5) % max(1, n // 50)
            anchors.append(f'<a href="/img/img{k}.png"><img src="/img/img{k}.png" alt="Image {k}"></a>')
        if i % 50 == 7:
            anchors.append(f'<a href="/missing/gone{i}.html">gone</a>')
        if i % 10 == 3:
            anchors.append('<a href="mailto:webmaster@example.org">mail</a> <a href="javascript:void(0)">js</a>')
            anchors.append('<a href="https://www.example.org/">elsewhere</a>')
        if i % 13 == 4:
            anchors.append(f'<a href="{page_path(rnd.randrange(n))}" rel="nofollow">nofollow</a>')
        head = f"<title>Page {i}</title>"
        if i % 97 == 50:
            head += '<meta name="robots" content="noindex">'
        if i % 89 == 44:
            head += f'<link rel="canonical" href="http://{host}{page_path(max(0, i - 1))}">'
        body = f"<h1>Page {i}</h1><p>" + "\n".join(anchors) + "</p>" + "<p>Lorem ipsum dolor sit amet. </p>" * 8
        path = os.path.join(out, "index.html") if i == 0 else os.path.join(out, f"sec{i // 100}", f"page{i}.html")
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "w", encoding="utf-8") as f:
            f.write(f"<!DOCTYPE html>\n<html><head>{head}</head><body>{body}</body></html>\n")


if __name__ == "__main__":
    main()
