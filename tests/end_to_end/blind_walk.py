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

ESCAPE = 0xff1b
MENU = 0xff67
LETTER_M = 0x6d
# What something that can be acted on may be, in a list, in a row of tabs, in a menu, and anywhere else.
PARTS = {"list": {"list item"}, "page tab list": {"page tab"}, "popup menu": {"menu item"}}
CONTROLS = {"button", "check box", "combo box", "slider", "text"}
# What is said when one goes into it.
GROUPS = {"dialog", "list", "page tab list", "popup menu", "tool bar"}
PATIENCE = 60  # seconds; a hang, not a measure of speed
# In milliseconds; by itself the bus gives a busy program 0.8 seconds to answer.
pyatspi.setTimeout(PATIENCE * 1000, PATIENCE * 1000)


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
            raise NotFound(what() if callable(what) else what)
        time.sleep(0.1)


def role_of(node):
    """The role's name. Newer AT-SPI calls a push button a button, and newer Qt tells one that opens a menu apart."""
    role = node.getRoleName()
    return "button" if role in ("push button", "push button menu") else role


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
            lines.append(f"{'  ' * depth}{role_of(child)} {child.name!r} {marks}")
            lines += outline(child, depth + 1)
    return lines


def actions_of(node):
    try:
        actions = node.queryAction()
    except NotImplementedError:
        return set()
    return {actions.getName(index) for index in range(actions.nActions)}


def wrongs(parent):
    """What is wrong with the controls below a node, each of which is to have a name, a fitting role and its states."""
    chosen = 0
    for index in range(parent.childCount):
        node = parent.getChildAtIndex(index)
        if node is None or "showing" not in states(node):
            continue
        label = f"{role_of(node)} {node.name!r} in {role_of(parent)} {parent.name!r}"
        told = states(node)
        chosen += "selected" in told
        if actions_of(node) - {"SetFocus"}:
            if role_of(node) not in PARTS.get(role_of(parent), CONTROLS):
                yield f"the role of {label}"
            if not node.name:
                yield f"no name of {label}"
            if "focusable" not in told and "sensitive" in told:  # newer Qt has no keyboard for a dimmed one
                yield f"no keyboard for {label}"
        elif "focusable" in told and not node.name:
            yield f"no name of {label}, which takes the keyboard"
        if role_of(node) in GROUPS and not node.name:
            yield f"no name of {label}"
        if role_of(node) == "filler":
            yield f"no role of {label}"
        yield from wrongs(node)
    if role_of(parent) == "page tab list" and chosen != 1:
        yield f"{chosen} tabs selected of {parent.name!r}"


class Program:
    def __init__(self, path, home, folder):
        self.home = pathlib.Path(home)
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
                if role_of(node) == role and (node.name == name or node.name.startswith(name + ",")):
                    return node
            return None
        return until(look, f"{role} {name!r}")

    def is_shown(self, role, name):
        return any(role_of(node) == role and node.name == name for node in below(self.window()))

    def gone(self, role, name):
        until(lambda: not self.is_shown(role, name), f"{role} {name!r} is still there")

    def act(self, node, action):
        actions = node.queryAction()
        names = [actions.getName(index) for index in range(actions.nActions)]
        if action not in names:
            raise NotFound(f"{action} of {role_of(node)} {node.name!r}, which only has {names}")
        actions.doAction(names.index(action))

    def press(self, role, name, within=None):
        self.act(self.find(role, name, within), "Press")

    def choose(self, combo_box, entry, within=None):
        box = self.find("combo box", combo_box, within)
        self.awaits("collapsed", box)
        self.act(box, "Press")
        self.awaits("expanded", box)
        entries = self.find("list", combo_box)
        self.inspect(f"the entries of {combo_box}")
        self.press("list item", entry, entries)

    def awaits(self, state, node):
        until(lambda: state in states(node), f"{state} of {role_of(node)} {node.name!r}")

    def inspect(self, screen):
        """Everything in the window is told properly, once what moves there has come to rest."""
        def settled():
            found[:] = [*wrongs(self.window())]
            return not found
        found = []
        try:
            until(settled, screen)
        except NotFound:
            raise NotFound(f"{screen}: " + "; ".join(found)) from None
        until(lambda: any("focused" in states(node) for node in below(self.window())), f"the keyboard on {screen}")

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
                        # so long that one still plays when it is looked at
                        "-i", "color=c=gray:s=320x180:r=25:d=60", "-c:v", "libx264", "-preset", "ultrafast",
                        "-pix_fmt", "yuv420p", "-metadata", f"creation_time=2026-11-20T09:0{minute}:00Z",
                        str(shoot / clip)], check=True)


def look_at_the_launcher(program):
    tools = program.find("page tab list", "Tools")
    program.find("panel", "Binnacle")  # its card
    program.inspect("the launcher")
    previous = program.find("button", "Previous tool")
    expect("sensitive" not in states(previous), "that nothing comes before the first tool")
    program.press("button", "Next tool")
    program.awaits("sensitive", previous)
    program.awaits("selected", program.find("page tab", "Huelock", tools))
    program.press("button", "Preview")
    program.press("button", "Tell me when it ships")
    program.find("text", "E-mail address")
    program.inspect("a tool in development")
    program.press("button", "Return to Larkspan")
    program.press("button", "Previous tool")


def look_into_the_header(program):
    program.find("button", "Choose Folder")
    program.inspect("the landing")
    for button, panel in [("Projects", "dialog"), ("My Account", "dialog"), ("What this model does", "dialog"),
                          ("Menu", "popup menu")]:
        opener = program.find("button", button)
        program.awaits("collapsed", opener)
        program.act(opener, "Press")
        program.awaits("expanded", opener)
        program.find(panel, "Settings and account" if button == "My Account" else button)
        program.inspect(f"what {button} opens")
        program.act(opener, "Press")
        program.awaits("collapsed", opener)


def set_up_copying(program):
    program.press("button", "Preferences")
    sheet = program.find("dialog", "Binnacle Preferences")
    program.inspect("the preferences")
    for tab in ["General", "Account", "Import"]:
        program.press("page tab", tab, sheet)
        program.awaits("selected", program.find("page tab", tab, sheet))
        program.inspect(f"the preferences' {tab}")
    program.choose("File handling", "Copy into folders", sheet)
    program.reads("File handling", "Copy into folders", sheet)
    toggle = program.find("button", "Open the editor after export", sheet)
    expect("checked" in states(toggle), "the toggle's state before")
    program.act(toggle, "Press")
    until(lambda: "checked" not in states(program.find("button", "Open the editor after export", sheet)),
          "the toggle's state after")
    program.press("button", "Close", sheet)
    program.gone("dialog", "Binnacle Preferences")


def type_key(symbol):
    pyatspi.Registry.generateKeyboardEvent(symbol, None, pyatspi.KEY_SYM)


def choose_folder(program, *folders):
    """Goes home and into one folder after the other, and chooses the last."""
    program.press("button", "Choose Folder")
    panel = program.find("dialog", "Choose the folder holding this shoot's raw clips.")
    program.inspect("the panel for a folder")
    program.press("list item", "Home", program.find("list", "Places", panel))
    opened = program.home.name
    for folder in folders:
        program.press("list item", folder, program.find("list", opened, panel))
        opened = folder
    program.find("list", opened, panel)
    program.press("button", "Sort This Folder", panel)


def stop_a_sort(program):
    projects = program.find("button", "Projects")
    program.awaits("collapsed", projects)
    program.act(projects, "Press")
    program.press("button", "New Project")
    choose_folder(program, "Others", "Long")
    program.find("progress bar", "Sorting Long")
    program.inspect("the sort at work")
    program.press("button", "Cancel")
    program.inspect("the landing after a sort that was stopped")


def settle_review(program):
    program.press("list item", "Needs a look", program.find("list", "Bins"))
    program.awaits("selected", program.find("list item", "Needs a look", program.find("list", "Bins")))
    program.inspect("the review list")
    program.find("heading", "3 clips Binnacle wasn't sure about")
    review = program.find("list", "Clips to look at")
    first = program.find("list item", "clip 2.mp4", review)
    expect("no room read from the frames" in first.name, "why a clip is in doubt")
    program.press("button", "Confirm", first)
    program.find("heading", "2 clips Binnacle wasn't sure about")
    program.choose("Bin of clip 11.mp4", "Pool")
    program.find("heading", "1 clip Binnacle wasn't sure about")
    program.press("button", "Confirm All")
    program.gone("list", "Clips to look at")


def look_at_a_clip(program):
    program.press("list item", "Pool", program.find("list", "Bins"))
    clips = program.find("list", "Clips")
    clip = program.find("list item", "clip 11.mp4", clips)
    program.act(clips, "SetFocus")
    program.awaits("focused", clip)
    program.inspect("the grid")
    for key, menu in [(LETTER_M, "Move to"), (MENU, "clip 11")]:
        type_key(key)
        program.find("popup menu", menu)
        program.inspect(f"the menu {menu}")
        type_key(ESCAPE)
        program.gone("popup menu", menu)
    program.awaits("focused", clip)
    program.act(clip, "Press")
    preview = program.find("dialog", "clip 11.mp4")
    program.inspect("the preview")
    expect("320 × 180" in preview.description, "what the preview says of the clip")
    program.press("button", "Play", preview)
    program.find("button", "Pause", preview)
    program.inspect("the player")
    program.choose("Second bin", "Garage", preview)
    program.reads("Second bin", "Garage", preview)
    program.press("button", "Done", preview)
    program.gone("dialog", "clip 11.mp4")
    program.find("list item", "Garage", program.find("list", "Bins"))


def check_coverage(program):
    menu = program.find("button", "Menu")
    program.awaits("collapsed", menu)
    program.act(menu, "Press")
    program.awaits("expanded", menu)
    program.press("menu item", "Check Coverage…", program.find("popup menu", "Menu"))
    sheet = program.find("dialog", "Coverage")
    program.inspect("the coverage")
    program.find("label", "Missing: Kitchen", sheet)
    pool = program.find("check box", "Pool", program.find("panel", "Bins that a listing needs", sheet))
    expect(pool.description == "1 clip", f"the coverage of a bin reading {pool.description!r}")
    for action, is_needed, finding in [("Toggle", True, "One take only: Pool"),
                                       ("Press", False, "No room of these has one take only.")]:
        program.act(pool, action)
        program.find("label", finding, sheet)
        until(lambda: ("checked" in states(pool)) == is_needed, f"the tick after {action}")
    program.press("button", "Done", sheet)
    program.gone("dialog", "Coverage")


def walk(path):
    with tempfile.TemporaryDirectory() as scratch:
        home = pathlib.Path(scratch, "home")
        shoot = home / "Shoots" / "Villa"
        record(shoot)
        (home / "Others" / "Long").mkdir(parents=True)
        for number in range(200):
            os.link(shoot / "clip 2.mp4", home / "Others" / "Long" / f"{number}.mp4")
        program = Program(path, home, shoot.parent)
        try:
            look_at_the_launcher(program)
            program.press("button", "Open Binnacle")
            look_into_the_header(program)
            set_up_copying(program)
            choose_folder(program, "Shoots", "Villa")
            settle_review(program)
            look_at_a_clip(program)
            check_coverage(program)
            program.press("button", "Export")
            program.find("heading", "Event created")
            program.inspect("the end of the export")
            for file in ["Villa.fcpxml", "Pool/clip 11.mp4", "Unsorted/clip 2.mp4", "Aerial - Drone/DJI_0001.MP4"]:
                expect((shoot / file).is_file(), f"{file} of the export")
            program.press("button", "Close", program.find("tool bar", "Window"))
            expect(program.process.wait(PATIENCE) == 0, "an orderly end")

            program = Program(path, home, home / "Others")
            program.press("button", "Open Binnacle")
            program.press("button", "Projects")
            project = program.find("list item", "Villa", program.find("list", "Sorted shoots"))
            expect(project.description == "4 clips · 4 bins", f"the project reading {project.description!r}")
            program.act(project, "SetFocus")
            program.find("button", "Rename", project)
            program.find("button", "Remove from recents", project)
            program.inspect("the projects")
            program.act(project, "Press")
            program.find("list item", "Pool", program.find("list", "Bins"))
            stop_a_sort(program)
        except NotFound as missing:
            print("not found:", missing, file=sys.stderr)
            print("\n".join(outline(program.window() or program.desktop)), file=sys.stderr)
            return 1
        finally:
            program.end()
    return 0


if __name__ == "__main__":
    sys.exit(walk(sys.argv[1]))
