"""Opens the program under a Wayland compositor without a screen, and works its window: wayland_walk.py PROGRAM

The window is found and worked over the accessibility bus, as in blind_walk.py. Needs script/with-display for its session
bus. Ends with 77 where the compositor can't run.
"""
import os
import pathlib
import subprocess
import sys
import tempfile
import time

from blind_walk import NotFound, Program, outline, until

SKIPPED = 77
SOCKET = "larkspan-test"


def start_compositor(folder):
    os.environ["XDG_RUNTIME_DIR"] = str(folder)
    compositor = subprocess.Popen(
        ["weston", "--backend=headless-backend.so", "--width=1600", "--height=1000", "--no-config", "--idle-time=0",
         f"--socket={SOCKET}"], stdout=subprocess.DEVNULL, stderr=open(folder / "weston.log", "wb"))
    deadline = time.monotonic() + 30
    while not (folder / SOCKET).exists():
        if compositor.poll() is not None or time.monotonic() > deadline:
            print("skipped, the compositor doesn't start:", (folder / "weston.log").read_text(), file=sys.stderr)
            compositor.kill()
            compositor.wait()
            return None
        time.sleep(0.1)
    return compositor


def size_of(program):
    frame = program.window().getChildAtIndex(0)
    return frame.queryComponent().getSize()


def is_size(program, width, height):
    until(lambda: size_of(program) == (width, height), f"a window of {width} × {height}")


def walk(path):
    with tempfile.TemporaryDirectory() as scratch:
        scratch = pathlib.Path(scratch)
        try:
            compositor = start_compositor(scratch)
        except FileNotFoundError:
            print("skipped, there is no weston", file=sys.stderr)
            return SKIPPED
        if compositor is None:
            return SKIPPED
        os.environ.pop("DISPLAY", None)
        os.environ.update(WAYLAND_DISPLAY=SOCKET, QT_QPA_PLATFORM="wayland")
        # There are no keys without a seat, and Qt 6.4's own text input takes one for granted.
        os.environ["QT_IM_MODULE"] = "compose"
        program = Program(path, scratch / "home", scratch)
        try:
            program.find("push button", "Open Binnacle")
            is_size(program, 1180, 790)
            program.press("push button", "Maximize")
            until(lambda: size_of(program)[0] == 1600 and size_of(program)[1] > 900, "a window that fills the screen")
            program.press("push button", "Restore")
            is_size(program, 1180, 790)
            program.press("push button", "Open Binnacle")
            program.find("push button", "Choose Folder")
            program.press("push button", "Close", program.find("tool bar", "Window"))
            until(lambda: program.process.poll() is not None, "the end of the program")
            return program.process.returncode
        except NotFound as missing:
            print("not found:", missing, "exit status", program.process.poll(), file=sys.stderr)
            print("\n".join(outline(program.window() or program.desktop)), file=sys.stderr)
            return 1
        finally:
            program.end()
            compositor.terminate()
            compositor.wait()


if __name__ == "__main__":
    sys.exit(walk(sys.argv[1]))
