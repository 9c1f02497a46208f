"""Works the program's window under a Wayland compositor, with a pointer and keys: wayland_walk.py PROGRAM

The compositor runs in a window of the virtual display that script/with-display gives it, so that what is pressed and
moved there reaches the program as a mouse and a keyboard do. Where things are is asked of the accessibility bus; where
the window is, of the picture. Ends with 77 where the compositor can't run.
"""
import itertools
import os
import pathlib
import re
import subprocess
import sys
import tempfile

from blind_walk import NotFound, Program, expect, outline, until

SKIPPED = 77
SOCKET = "larkspan-test"
DESKTOP = (1500, 940)
# One colour all over and nothing that moves: all that differs is the program's window.
CONFIGURATION = """[shell]
panel-position=none
background-color=0xff804020
animation=none
startup-animation=none
close-animation=none
"""
HEADER = (590, 20)  # where it holds nothing to press


def xdotool(*arguments):
    return subprocess.run(["xdotool", *map(str, arguments)], check=True, capture_output=True, text=True).stdout


class Compositor:
    def __init__(self, folder):
        os.environ["XDG_RUNTIME_DIR"] = str(folder)
        configuration = folder / "weston.ini"
        configuration.write_text(CONFIGURATION)
        self.log = folder / "weston.log"
        width, height = DESKTOP
        self.process = subprocess.Popen(
            ["weston", "--backend=x11-backend.so", "--use-pixman", f"--width={width}", f"--height={height}",
             f"--config={configuration}", "--idle-time=0", f"--socket={SOCKET}"],
            stdout=subprocess.DEVNULL, stderr=self.log.open("wb"))
        self.socket = folder / SOCKET
        self.looks = itertools.count()

    def starts(self):
        """False if it can't run here."""
        until(lambda: self.process.poll() is not None or self.socket.exists(), "the compositor")
        if self.process.poll() is not None:
            return False
        self.window = xdotool("search", "--sync", "--onlyvisible", "--class", "weston").split()[0]
        until(self.has_the_pointer, "the compositor's empty desktop and its pointer")
        return True

    def version(self):
        return int(re.match(r"weston (\d+)", subprocess.check_output(["weston", "--version"], text=True))[1])

    def picture(self, form):
        return subprocess.run(["import", "-window", self.window, "-format", form, "info:-"], check=True,
                              capture_output=True, text=True).stdout

    def has_the_pointer(self):
        """The compositor follows the pointer once it has seen it enter, and then shows nothing else."""
        if next(self.looks) % 10 == 0:
            xdotool("mousemove", 0, 0)
            self.move_to(600, 400)
        left, top, width, height = self.place()
        return abs(left - 600) < 20 and abs(top - 400) < 20 and width < 40 and height < 40

    def place(self):
        """Left, top, width and height of all that isn't the desktop. The pointer has to be within the window."""
        width, height, left, top = map(int, re.fullmatch(r"(\d+)x(\d+)\+(\d+)\+(\d+)", self.picture("%@")).groups())
        return left, top, width, height

    def move_to(self, x, y):
        xdotool("mousemove", "--window", self.window, x, y)

    def drag(self, start, end, until_so, what):
        self.move_to(*start)
        xdotool("mousedown", 1)
        # The program hands a drag over to the compositor when it sees the pointer move, which then may be there already.
        nudges = itertools.cycle([1, 0])

        def arrived():
            self.move_to(end[0] - next(nudges), end[1])
            return until_so()
        until(arrived, what)
        self.move_to(*end)
        until(until_so, what)
        xdotool("mouseup", 1)

    def end(self):
        self.process.terminate()
        self.process.wait()


class Window:
    """The program's window on the compositor's desktop."""

    def __init__(self, compositor, program):
        self.compositor = compositor
        self.program = program
        self.left, self.top = 0, 0

    def size(self):
        return self.program.window().getChildAtIndex(0).queryComponent().getSize()

    def is_size(self, width, height):
        until(lambda: self.size() == (width, height), lambda: f"a window of {width} × {height}, not {self.size()}")

    def find_place(self):
        """Notes where it is, and shows that nothing is around it: no frame and no title bar beside our own."""
        self.compositor.move_to(DESKTOP[0] // 2, DESKTOP[1] // 2)
        until(lambda: self.compositor.place()[2:] == self.size(), "a window without decorations")
        self.left, self.top, *_ = self.compositor.place()

    def on_desktop(self, point):
        return self.left + point[0], self.top + point[1]

    def click(self, point, count=1):
        self.compositor.move_to(*self.on_desktop(point))
        xdotool("click", "--repeat", count, "--delay", 80, 1)

    def click_node(self, role, name, within=None):
        area = self.program.find(role, name, within).queryComponent().getExtents(0)
        self.click((area.x + area.width // 2, area.y + area.height // 2))

    def drag(self, start, end, size):
        """Drags an edge or corner until the window has that size."""
        self.compositor.drag(self.on_desktop(start), self.on_desktop(end), lambda: self.size() == size,
                             lambda: f"{size} after a drag of the edge at {start}, not {self.size()}")
        self.find_place()


def click_and_type(window, program):
    window.click_node("button", "Open Binnacle")
    program.find("button", "Choose Folder")
    xdotool("key", "ctrl+comma")
    program.find("dialog", "Binnacle Preferences")
    xdotool("key", "Escape")
    program.gone("dialog", "Binnacle Preferences")


def maximise(window):
    window.click(HEADER, count=2)
    window.is_size(*DESKTOP)
    window.left, window.top = 0, 0
    window.click(HEADER, count=2)
    window.is_size(1180, 790)
    window.find_place()


def move(window, compositor):
    left, top, width, height = compositor.place()
    # To the desktop's corner, where there is room to make it larger and smaller.
    start, end = window.on_desktop(HEADER), (HEADER[0] + 100, HEADER[1] + 40)
    compositor.drag(start, end, lambda: compositor.place() == (100, 40, width, height), "the window moved")
    window.find_place()
    expect((window.left, window.top) != (left, top), "a window that wasn't there before")


def resize(window, compositor):
    # Version 14 of the compositor lets a window be dragged to any size, whatever the least one that it asked for.
    window.drag((1178, 788), (300, 200) if compositor.version() < 14 else (978, 638), (980, 640))
    window.drag((1, 300), (-49, 300), (1030, 640))
    window.drag((500, 638), (500, 688), (1030, 690))


def walk(path):
    with tempfile.TemporaryDirectory() as scratch:
        scratch = pathlib.Path(scratch)
        try:
            compositor = Compositor(scratch)
        except FileNotFoundError as missing:
            print("skipped:", missing, file=sys.stderr)
            return SKIPPED
        program = None
        try:
            if not compositor.starts():
                print("skipped, the compositor doesn't start:", compositor.log.read_text(), file=sys.stderr)
                return SKIPPED
            os.environ.update(WAYLAND_DISPLAY=SOCKET, QT_QPA_PLATFORM="wayland")
            program = Program(path, scratch / "home", scratch)
            window = Window(compositor, program)
            program.find("button", "Open Binnacle")
            window.is_size(1180, 790)
            window.find_place()
            click_and_type(window, program)
            maximise(window)
            move(window, compositor)
            resize(window, compositor)
            window.click_node("button", "Close", program.find("tool bar", "Window"))
            until(lambda: program.process.poll() is not None, "the end of the program")
            return program.process.returncode
        except NotFound as missing:
            print("not found:", missing, file=sys.stderr)
            if program is not None:
                print("exit status", program.process.poll(), file=sys.stderr)
                print("\n".join(outline(program.window() or program.desktop)), file=sys.stderr)
            return 1
        finally:
            if program is not None:
                program.end()
            compositor.end()


if __name__ == "__main__":
    sys.exit(walk(sys.argv[1]))
