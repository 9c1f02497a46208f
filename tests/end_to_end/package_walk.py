"""Works with an installed program as its editor does: package_walk.py PROGRAM HOME sort|reopen

"sort" has it sort the folder Shoots/Villa of that home and write the event. "reopen" finds that project again and opens
it. Everything is found by role and name over the accessibility bus. Needs a display and a session bus of its own.
"""
import pathlib
import sys
import xml.etree.ElementTree

from blind_walk import PATIENCE, NotFound, Program, below, choose_folder, expect, outline, role_of


def bins(program):
    """The names of the bins in the sidebar, with what is told of them."""
    return [node.name for node in below(program.find("list", "Bins")) if role_of(node) == "list item"]


def sort(program, shoot):
    clips = {file.name for file in shoot.iterdir()}
    choose_folder(program, "Shoots", "Villa")
    print("sorted into:", "; ".join(bins(program)))
    program.press("button", "Export")
    program.find("heading", "Event created")
    event = xml.etree.ElementTree.parse(shoot / "Villa.fcpxml")
    sources = {pathlib.Path(media.get("src")).name for media in event.iter("media-rep")}
    expect(sources == clips, f"all clips in the event, which has {sorted(sources)}")
    keywords = {keyword.get("value") for keyword in event.iter("keyword")}
    expect("Kitchen" in keywords, f"the kitchen among the keywords {sorted(keywords)}")


def reopen(program, _):
    program.press("button", "Projects")
    program.press("list item", "Villa", program.find("list", "Sorted shoots"))
    print("reopened with:", "; ".join(bins(program)))


def walk(path, home, errand):
    program = Program(path, home, home)
    try:
        program.find("page tab list", "Tools")
        program.press("button", "Open Binnacle")
        errand(program, home / "Shoots" / "Villa")
        program.press("button", "Close", program.find("tool bar", "Window"))
        expect(program.process.wait(PATIENCE) == 0, "an orderly end")
    except NotFound as missing:
        print("not found:", missing, file=sys.stderr)
        print("\n".join(outline(program.window() or program.desktop)), file=sys.stderr)
        return 1
    finally:
        program.end()
    return 0


if __name__ == "__main__":
    sys.exit(walk(sys.argv[1], pathlib.Path(sys.argv[2]), {"sort": sort, "reopen": reopen}[sys.argv[3]]))
