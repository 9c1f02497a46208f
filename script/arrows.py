#!/usr/bin/python3
"""Checks the arrows between the folders: each include of ours follows a link, and ARCHITECTURE.md draws the links.

    arrows.py BUILD_FOLDER

CMake writes its links into BUILD_FOLDER/arrows.txt, a line for each folder that is a library: "screens: core design
sound". A source may include its own folder and those that it links directly. The picture is the first block under
"## Modules": a line for each library with its arrows, which all lead to lines further down, so that there is no circle.
Below it a sentence lists the folders of core in the order in which they may include each other.
"""
import pathlib
import re
import subprocess
import sys

OURS = re.compile(r'^#include "([^"]+)/[^"/]+"$', re.MULTILINE)


def linked_folders(build):
    """Which folders each folder links."""
    lines = pathlib.Path(build, "arrows.txt").read_text().splitlines()
    return {folder: set(links.split()) for folder, links in (line.split(":") for line in lines)}


def drawn_folders(document):
    """Which folders each folder has an arrow to, and the order of the lines."""
    block = re.search(r"^## Modules\n+```\n(.*?)^```", document, re.MULTILINE | re.DOTALL)
    drawn = {}
    for line in block[1].splitlines() if block else []:
        folder, _, links = line.partition("──►")
        drawn[folder.strip()] = {link.strip() for link in links.split(",")} - {""}
    return drawn


def sources():
    names = subprocess.run(["git", "ls-files", "--cached", "--others", "--exclude-standard", "*.h", "*.cpp"],
                           capture_output=True, text=True, check=True).stdout.splitlines()
    return [pathlib.Path(name) for name in names if pathlib.Path(name).is_file()]


def library_of(path, libraries):
    """The library that a path is in, or the path's own folder if that is none."""
    return next((str(folder) for folder in [path, *path.parents] if str(folder) in libraries), str(path))


def wrong_includes(linked):
    for source in sources():
        library = library_of(source.parent, linked)
        if library not in linked:
            continue  # tests and benches include what they like
        for included in OURS.findall(source.read_text()):
            target = library_of(pathlib.Path(included), linked)
            if target not in linked[library] | {library}:
                yield f"{source}: {library} includes {target}, which it doesn't link"


def wrong_lines(linked, drawn):
    for folder in sorted(linked.keys() | drawn.keys()):
        if folder not in drawn:
            yield f"ARCHITECTURE.md: {folder} isn't drawn"
        elif folder not in linked:
            yield f"ARCHITECTURE.md: {folder} is drawn, and is no library"
        elif linked[folder] != drawn[folder]:
            yield (f"ARCHITECTURE.md: {folder} is drawn with arrows to {sorted(drawn[folder])}, "
                   f"and links {sorted(linked[folder])}")
    order = list(drawn)
    for folder, links in drawn.items():
        for link in links & drawn.keys():
            if order.index(link) <= order.index(folder):
                yield f"ARCHITECTURE.md: the arrow from {folder} to {link} leads upwards"


def folders_of_core(document):
    """The folders of core, those that may include first."""
    sentence = re.search(r"^The folders of core, each of which includes only those after it: ([^.]*)\.$", document,
                         re.MULTILINE)
    return [f"core/{name}" for name in re.split(r",\s+", sentence[1])] if sentence else []


def wrong_inside_core(order):
    for source in sources():
        folder = str(source.parent)
        if not folder.startswith("core/"):
            continue
        if folder not in order:
            yield f"ARCHITECTURE.md: {folder} isn't among the folders of core"
            continue
        for included in OURS.findall(source.read_text()):
            if included not in order[order.index(folder):]:
                yield f"{source}: {folder} includes {included}, which comes before it in ARCHITECTURE.md"


def main():
    linked = linked_folders(sys.argv[1])
    document = pathlib.Path("ARCHITECTURE.md").read_text()
    found = [*wrong_includes(linked), *wrong_lines(linked, drawn_folders(document)),
             *wrong_inside_core(folders_of_core(document))]
    print("\n".join(found), end="\n" if found else "", file=sys.stderr)
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
