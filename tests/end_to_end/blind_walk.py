"""Walks the program from the launcher to the export as someone does who can't see it: blind_walk.py PROGRAM

Everything is found by role and name and done by the actions that the accessibility bus offers; no pointer, no key and
no place on the screen. Needs a display and a session bus of its own (script/with-display). Says what it couldn't find,
with all that the bus shows, and ends with 1.
"""
import os
import pathlib
import signal
import subprocess
import sys
import tempfile
import time

import pyatspi

SPACE = 0x20
PATIENCE = 60  # seconds; a hang, not a measure of speed


class NotFound(Exception):
    pass


def until(condition, what):
    deadline = time.monotonic() + PATIENCE
    while True:
        try:
            result = condition()
        except Exception:  # what was looked at has gone meanwhile: the bus says so in many ways
            result = None
        if result:
            return result
        if time.monotonic() > deadline:
            raise NotFound(what)
        time.sleep(0.1)


def states(node):
    return {pyatspi.stateToString(state) for state in node.getState().getStates()}


def below(node):
    """All that can be perceived below a node, in its order."""
    for index in range(node.childCount):
        child = node.getChildAtIndex(index)
        if child is not None and "showing" in states(child):
            yield child
            yield from below(child)


def outline(node, depth=0):
    lines = []
    for index in range(node.childCount):
        child = node.getChildAtIndex(index)
        if child is not None:
            marks = " ".join(sorted(states(child) & {"showing", "focused", "selected", "checked"}))
            lines.append(f"{'  ' * depth}{child.getRoleName()} {child.name!r} {marks}")
            lines += outline(child, depth + 1)
    return lines


class Program:
    def __init__(self, path, home, folder):
        self.desktop = pyatspi.Registry.getDesktop(0)  # before the program, which joins the bus that it finds
        environment = dict(os.environ, HOME=str(home), QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1")
        for variable in ("XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME"):
            environment.pop(variable, None)
        self.process = subprocess.Popen([path], cwd=folder, env=environment)

    def window(self):
        for application in self.desktop:
            if application.name == "Larkspan" and application.get_process_id() == self.process.pid:
                return application
        return None

    def find(self, role, name, within=None):
        """Waits for the first node of that role whose name is, or starts with, the given one."""
        def look():
            for node in below(within or self.window()):
                if node.getRoleName() == role and (node.name == name or node.name.startswith(name + ",")):
                    return node
            return None
        return until(look, f"{role} {name!r}")

    def is_shown(self, role, name):
        return any(node.getRoleName() == role and node.name == name for node in below(self.window()))

    def gone(self, role, name):
        until(lambda: not self.is_shown(role, name), f"{role} {name!r} is still there")

    def act(self, node, action):
        actions = node.queryAction()
        names = [actions.getName(index) for index in range(actions.nActions)]
        if action not in names:
            raise NotFound(f"{action} of {node.getRoleName()} {node.name!r}, which only has {names}")
        actions.doAction(names.index(action))

    def press(self, role, name, within=None):
        self.act(self.find(role, name, within), "Press")

    def choose(self, combo_box, entry, within=None):
        self.press("combo box", combo_box, within)
        self.press("list item", entry)

    def reads(self, combo_box, entry, within):
        box = self.find("combo box", combo_box, within)
        until(lambda: box.description == entry, f"{combo_box!r} reading {entry!r}")

    def end(self):
        if self.process.poll() is None:
            self.process.send_signal(signal.SIGTERM)
            self.process.wait(PATIENCE)


def expect(condition, what):
    if not condition:
        raise NotFound(what)


def record(shoot):
    shoot.mkdir(parents=True)
    for minute, clip in enumerate(["clip 2.mp4", "clip 10.mov", "clip 11.mp4", "DJI_0001.MP4"]):
        subprocess.run(["ffmpeg", "-nostdin", "-loglevel", "error", "-f", "lavfi",
                        "-i", "color=c=gray:s=320x180:r=25:d=2", "-c:v", "libx264", "-preset", "ultrafast",
                        "-pix_fmt", "yuv420p", "-metadata", f"creation_time=2026-11-20T09:0{minute}:00Z",
                        str(shoot / clip)], check=True)


def set_up_copying(program):
    program.press("push button", "Preferences")
    sheet = program.find("dialog", "Binnacle Preferences")
    program.press("push button", "Import", sheet)
    program.choose("File handling", "Copy into folders", sheet)
    program.reads("File handling", "Copy into folders", sheet)
    toggle = program.find("push button", "Open the editor after export", sheet)
    expect("checked" in states(toggle), "the toggle's state before")
    program.act(toggle, "Press")
    until(lambda: "checked" not in states(program.find("push button", "Open the editor after export", sheet)),
          "the toggle's state after")
    program.press("push button", "Close", sheet)
    program.gone("dialog", "Binnacle Preferences")


def choose_folder(program):
    program.press("push button", "Choose Folder")
    panel = program.find("dialog", "Choose the folder holding this shoot's raw clips.")
    name = program.find("label", "Villa", panel)
    program.act(name.parent, "SetFocus")
    # The panel is the toolkit's own: its buttons don't answer to the bus, but once they are focused to the space bar.
    button = program.find("push button", "Sort This Folder", panel)
    program.act(button, "SetFocus")
    until(lambda: "focused" in states(button), "the focus on the panel's button")
    pyatspi.Registry.generateKeyboardEvent(SPACE, None, pyatspi.KEY_SYM)


def settle_review(program):
    program.press("push button", "Needs a look", program.find("list", "Bins"))
    program.find("heading", "3 clips Binnacle wasn't sure about")
    review = program.find("list", "Clips to look at")
    first = program.find("list item", "clip 2.mp4", review)
    expect("no room read from the frames" in first.name, "why a clip is in doubt")
    program.press("push button", "Confirm", first)
    program.find("heading", "2 clips Binnacle wasn't sure about")
    program.choose("Bin of clip 11.mp4", "Pool")
    program.find("heading", "1 clip Binnacle wasn't sure about")
    program.press("push button", "Confirm All")
    program.gone("list", "Clips to look at")


def look_at_a_clip(program):
    program.press("push button", "Pool", program.find("list", "Bins"))
    program.press("list item", "clip 11.mp4", program.find("list", "Clips"))
    preview = program.find("dialog", "clip 11.mp4")
    expect("320 × 180" in preview.description, "what the preview says of the clip")
    program.press("push button", "Play", preview)
    program.find("push button", "Pause", preview)
    program.choose("Second bin", "Garage", preview)
    program.reads("Second bin", "Garage", preview)
    program.press("push button", "Done", preview)
    program.gone("dialog", "clip 11.mp4")
    program.find("push button", "Garage", program.find("list", "Bins"))


def walk(path):
    with tempfile.TemporaryDirectory() as scratch:
        home = pathlib.Path(scratch, "home")
        shoot = home / "Shoots" / "Villa"
        record(shoot)
        program = Program(path, home, shoot.parent)
        try:
            program.press("push button", "Open Binnacle")
            set_up_copying(program)
            choose_folder(program)
            settle_review(program)
            look_at_a_clip(program)
            program.press("push button", "Export")
            program.find("heading", "Event created")
            for file in ["Villa.fcpxml", "Pool/clip 11.mp4", "Unsorted/clip 2.mp4", "Aerial - Drone/DJI_0001.MP4"]:
                expect((shoot / file).is_file(), f"{file} of the export")
            program.press("push button", "Close", program.find("tool bar", "Window"))
            expect(program.process.wait(PATIENCE) == 0, "an orderly end")

            program = Program(path, home, shoot.parent)
            program.press("push button", "Open Binnacle")
            program.press("push button", "Projects")
            project = program.find("list item", "Villa", program.find("list", "Sorted shoots"))
            expect(project.description == "4 clips · 4 bins", f"the project reading {project.description!r}")
            program.act(project, "Press")
            program.find("push button", "Pool", program.find("list", "Bins"))
        except NotFound as missing:
            print("not found:", missing, file=sys.stderr)
            print("\n".join(outline(program.window() or program.desktop)), file=sys.stderr)
            return 1
        finally:
            program.end()
    return 0


if __name__ == "__main__":
    sys.exit(walk(sys.argv[1]))
