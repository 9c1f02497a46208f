"""Chooses a shoot and saves a text in the desktop's own panels, which its portal shows: portal_walk.py PROGRAM

The portal is the real one with its GTK back end. Its panels are worked by keys, and looked at over the accessibility
bus. Needs a display and a session bus of its own (script/with-display). Says what it couldn't find and ends with 1.
"""
import os
import pathlib
import subprocess
import sys
import tempfile

import pyatspi

from blind_walk import PATIENCE, NotFound, Program, below, expect, outline, record, role_of, states, until

PORTAL = "/usr/libexec/xdg-desktop-portal"
DOCUMENTS = "org.freedesktop.portal.Documents"


def xdotool(*arguments):
    subprocess.run(["xdotool", *arguments], check=True, timeout=60)


def start_service(name, command, **settings):
    process = subprocess.Popen(command, **settings)
    subprocess.run(["gdbus", "wait", "--session", "--timeout", str(PATIENCE), name], check=True)
    return process


def start_portal():
    """Its processes, to be ended in that order."""
    # A stand-in for the file system that programs in a sandbox get their files by: newer portals ask for it first.
    documents = start_service(DOCUMENTS, [sys.executable, "-m", "dbusmock", "--session", DOCUMENTS,
                                          "/org/freedesktop/portal/documents", DOCUMENTS], stdout=subprocess.DEVNULL)
    # The portal picks its back end by the desktop's name.
    portal = start_service("org.freedesktop.portal.Desktop", [PORTAL],
                           env=dict(os.environ, XDG_CURRENT_DESKTOP="GNOME"))
    return portal, documents


def find_panel(title):
    """The portal's window of that title, once it has the keyboard."""
    def look():
        for application in pyatspi.Registry.getDesktop(0):
            if application.name == "xdg-desktop-portal-gtk":
                for window in application:
                    if window.name == title and "active" in states(window):
                        return window
        return None
    return until(look, f"the portal's panel {title!r}")


def await_closed(panel):
    def look():
        return not any(panel == window for application in pyatspi.Registry.getDesktop(0)
                       if application.name == "xdg-desktop-portal-gtk" for window in application)
    until(look, "the panel is still there")


def find_in(panel, role, matches, what):
    return until(lambda: next((node for node in below(panel) if role_of(node) == role and matches(node)), None),
                 what)


def text_of(node):
    return node.queryText().getText(0, -1)


def type_path(panel, path):
    """Types an absolute path. Its slash brings up the panel's field; the panel adds the slash of a folder itself."""
    xdotool("key", "slash")
    find_in(panel, "text", lambda node: text_of(node) == "/", "a field for the path")
    xdotool("type", "--delay", "20", "--", str(path).removeprefix("/"))
    find_in(panel, "text", lambda node: text_of(node).rstrip("/") == str(path), f"a field that reads {path}")


def ask_for_shoot(program):
    program.press("button", "Choose Folder")
    return find_panel("Choose the folder holding this shoot's raw clips.")


def choose_shoot(program, shoot):
    program.press("button", "Open Binnacle")
    panel = ask_for_shoot(program)
    xdotool("key", "Escape")
    await_closed(panel)
    panel = ask_for_shoot(program)
    find_in(panel, "button", lambda node: node.name == "Sort This Folder", "the words on the panel's button")
    type_path(panel, shoot)
    xdotool("key", "Return")
    until(lambda: any(node.name.startswith("Villa · 4 clips") for node in below(program.window())), "the sorted shoot")


def save_vocabulary(program, home):
    # Twice: the second panel suggests the first name again, and not the one that was typed.
    for name in ["words", None]:
        program.press("button", "Menu")
        program.find("popup menu", "Menu")
        program.press("menu item", "Diagnostics")
        program.press("menu item", "Export Vision Vocabulary…")
        panel = find_panel("Export Vision Vocabulary")
        find_in(panel, "text", lambda node: text_of(node) == "vision-vocabulary.txt", "the suggested name")
        file = home / "Documents" / "vision-vocabulary.txt"
        if name:
            file = home / "Documents" / (name + ".txt")
            xdotool("key", "ctrl+a")
            type_path(panel, file)
        xdotool("key", "Return")
        until(file.exists, f"{file.name}")


def walk(path):
    with tempfile.TemporaryDirectory() as scratch:
        home = pathlib.Path(scratch, "home")
        shoot = home / "Shoots" / "Villa"
        record(shoot)
        (home / "Documents").mkdir()
        portal = start_portal()
        program = None
        try:
            program = Program(path, home, home)
            choose_shoot(program, shoot)
            save_vocabulary(program, home)
            program.press("button", "Close", program.find("tool bar", "Window"))
            expect(program.process.wait(PATIENCE) == 0, "an orderly end")
        except NotFound as missing:
            print("not found:", missing, file=sys.stderr)
            for application in pyatspi.Registry.getDesktop(0):
                print(application.name, *outline(application), sep="\n", file=sys.stderr)
            return 1
        finally:
            if program:
                program.end()
            for process in portal:
                process.terminate()
                process.wait(PATIENCE)
    return 0


if __name__ == "__main__":
    sys.exit(walk(sys.argv[1]))
