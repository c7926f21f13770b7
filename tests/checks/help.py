#!/usr/bin/env python3
"""help.py [ROOT]: the pages of the help are whole and hang together.

Every tag is closed, every link leads to a page, every page can be reached from the contents and is in the project and the
table of contents of ZVR.CHM, and every page that the program asks for by name is there.
"""
import pathlib
import re
import sys
from html.parser import HTMLParser

VOID = {"meta", "link", "br", "hr", "img", "param"}


class Page(HTMLParser):
    def __init__(self, name, text):
        super().__init__()
        self.name, self.links, self.open, self.faults = name, [], [], []
        self.feed(text)
        self.close()
        self.faults += [f"<{tag}> is not closed" for tag in self.open]

    def handle_starttag(self, tag, attrs):
        if tag not in VOID:
            self.open.append(tag)
        self.links += [value for key, value in attrs if key in ("href", "src")]

    def handle_endtag(self, tag):
        if not self.open or self.open.pop() != tag:
            self.faults.append(f"line {self.getpos()[0]}: </{tag}> closes nothing that is open")


def main():
    root = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else pathlib.Path(__file__).parents[2])
    folder = root / "help"
    pages = {path.name: Page(path.name, path.read_text("utf-8")) for path in sorted(folder.glob("*.html"))}
    if "ZVR.html" not in pages:
        return [f"there is no {folder}/ZVR.html"]
    faults = [f"{page.name}: {fault}" for page in pages.values() for fault in page.faults]
    for page in pages.values():
        faults += [f"{page.name}: {link} leads nowhere" for link in page.links
                   if not (folder / link.split("#")[0]).is_file()]
    listed = {link for link in pages["ZVR.html"].links}
    project = (folder / "ZVR.hhp").read_text("utf-8").split("[FILES]")[1].split()
    contents = re.findall(r'name="Local" value="([^"]*)"', (folder / "ZVR.hhc").read_text("utf-8"))
    for name in pages:
        if name != "ZVR.html" and name not in listed:
            faults.append(f"{name} is not in the contents, ZVR.html")
        for place, names in (("ZVR.hhp", project), ("ZVR.hhc", contents)):
            if name not in names:
                faults.append(f"{name} is not in {place}")
    faults += [f"{place}: there is no {name}" for place, names in (("ZVR.hhp", project), ("ZVR.hhc", contents))
               for name in names if not (folder / name).is_file()]
    for source in (root / "src").rglob("*.cpp"):
        for topic in re.findall(r'OpenHelp(?:File)?\([^;]*?"(\w+)"', source.read_text("utf-8")):
            if topic + ".html" not in pages:
                faults.append(f"{source}: there is no page {topic}.html")
    return faults


if __name__ == "__main__":
    found = main()
    for fault in found:
        print("help:", fault, file=sys.stderr)
    sys.exit(1 if found else 0)
