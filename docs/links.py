#!/usr/bin/env python3
"""Follows every link that stays here: `docs/links.py FOLDER-OF-PAGES MARKDOWN...`, called by scripts/docs.

In pages, links, pictures, scripts and style sheets have to be there, and what stands behind a # as well; in Markdown that is read as it
is, the files. Links to other sites are counted, not followed.
"""

import html.parser
import pathlib
import re
import sys
import urllib.parse


class Page(html.parser.HTMLParser):
    def __init__(self, path):
        super().__init__()
        self.links, self.anchors = [], {""}
        self.feed(path.read_text(encoding="utf-8"))

    def handle_starttag(self, tag, attributes):
        for name, value in attributes:
            if name in ("href", "src") and value:
                self.links.append(value)
            if name in ("id", "name") and value:
                self.anchors.add(value)


def outside(link):
    return bool(urllib.parse.urlsplit(link).scheme) or link.startswith("//")


def main(folder, documents):
    pages = {path: Page(path) for path in sorted(folder.rglob("*.html"))}
    broken, followed, others = [], 0, 0

    def follow(path, link):
        nonlocal followed, others
        if outside(link):
            others += 1
            return
        followed += 1
        parts = urllib.parse.urlsplit(link)
        target = (path.parent / urllib.parse.unquote(parts.path)).resolve() if parts.path else path
        if target.is_dir() and path in pages:
            target /= "index.html"
        if not target.exists():
            broken.append(f"{path}: {link} is not there")
        elif target in pages and urllib.parse.unquote(parts.fragment) not in pages[target].anchors:
            broken.append(f"{path}: {link} has no such place")

    for path, page in pages.items():
        for link in page.links:
            follow(path, link)
    for path in documents:
        text = re.sub(r"^```.*?^```", "", path.read_text(encoding="utf-8"), flags=re.M | re.S)
        for link in re.findall(r"\]\(([^)\s]+)\)", text):
            follow(path, link)

    for line in broken:
        print(f"links: {line}", file=sys.stderr)
    if not pages or broken:
        raise SystemExit(f"links: {len(broken)} lead nowhere" if broken else "links: no pages")
    print(f"links: {followed} on {len(pages)} pages lead somewhere; {others} to other sites were not followed")


main(pathlib.Path(sys.argv[1]).resolve(), [pathlib.Path(name).resolve() for name in sys.argv[2:]])
