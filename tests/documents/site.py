#!/usr/bin/env python3
"""Judges the manual pages and the site.

site.py MAN FILE...       every function of these version scripts and headers has a page or a link to one, and every link leads to one
site.py HTML              links of the site lead to files of it, and to anchors that they have; every page is reached
"""
import os
import re
import sys
from html.parser import HTMLParser

faults = []


class Page(HTMLParser):
    def __init__(self, path):
        super().__init__()
        self.anchors, self.links = set(), []
        with open(path, encoding="utf-8") as file:
            self.feed(file.read())

    def handle_starttag(self, tag, attributes):
        for name, value in attributes:
            if name in ("id", "name"):
                self.anchors.add(value)
            if name in ("href", "src") and value:
                self.links.append(value)


def manual(directory, files):
    names = set()
    for path in files:
        with open(path, encoding="utf-8") as file:
            names |= set(re.findall(r"^(?:\w[\w *]*\b(?=\w+\()| +(?=\w+;))(\w+)", file.read(), re.M))
    pages = {name.removesuffix(".3") for name in os.listdir(directory)}
    faults.extend(f"no page for {name}" for name in sorted(names - pages))
    for page in pages:
        with open(os.path.join(directory, page + ".3"), encoding="utf-8") as file:
            text = file.read()
        link = re.match(r"\.so man3/(\w+)\.3\n", text)
        if not (link[1] in pages if link else all(f".SH {part}\n" in text for part in ("NAME", "SYNOPSIS", "DESCRIPTION"))):
            faults.append(f"{page}: leads nowhere, or is not whole")
        faults.extend(f"{page}: no {other}(3)" for other in re.findall(r"^\.BR (\w+) \(3\)", text, re.M) if other not in pages)
    print(f"{len(names)} functions, {len(pages)} pages and links")
    return len(names)


def site(directory):
    pages = {name: Page(os.path.join(directory, name)) for name in os.listdir(directory) if name.endswith(".html")}
    count = 0
    for name, page in pages.items():
        for link in page.links:
            target, _, anchor = link.partition("#")
            if re.match(r"[a-z]+:", link):
                continue
            count += 1
            target = target or name
            if not os.path.exists(os.path.join(directory, target)):
                faults.append(f"{name}: no such file: {link}")
            elif anchor and target in pages and anchor not in pages[target].anchors:
                faults.append(f"{name}: no such anchor: {link}")
    print(f"{len(pages)} pages, {count} links")
    return count


found = manual(sys.argv[1], sys.argv[2:]) if len(sys.argv) > 2 else site(sys.argv[1])
if found < 20:
    faults.append("hardly anything was found")
sys.exit("\n".join(faults) if faults else 0)
