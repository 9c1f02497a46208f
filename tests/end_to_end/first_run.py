"""Meets the program as editors on unusual machines do: first_run.py PROGRAM PICTURES [CASE…]

Each case gives a fresh home to a display of its own, and walks from the launcher to the event and back to the project.
Leaves pictures of the window in the folder PICTURES, and says for each case how long the walk took and what failed.
Needs root, to mount and to cut the network; run by hand.
"""
import dataclasses
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import time

HERE = pathlib.Path(__file__).resolve()
WITH_DISPLAY = HERE.parents[2] / "script" / "with-display"


@dataclasses.dataclass(frozen=True)
class Case:
    display: str = "1600x1000"
    settings: str = ""  # of the desktop
    environment: dict = dataclasses.field(default_factory=dict)
    wrapper: tuple = ()  # what the walk is run by
    keeps_projects: bool = True


# Each call that makes a file safe or gives it a name takes a third of a second.
SLOW_CALLS = "fsync,fdatasync,rename,renameat2,linkat"
SLOW = ("strace", "--follow-forks", "--seccomp-bpf", "--quiet=all", "--output=/dev/null", f"--trace={SLOW_CALLS}",
        f"--inject={SLOW_CALLS}:delay_enter=333000")

# A session bus that starts nothing by itself but what the walk itself needs.
BARE_BUS = """<busconfig>
  <type>session</type>
  <listen>unix:tmpdir=/tmp</listen>
  <servicedir>{services}</servicedir>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
"""
A_SERVICE_FOR_THE_WALK = pathlib.Path("/usr/share/dbus-1/services/org.a11y.Bus.service")

# No case has a sound server, or a portal that works.
CASES = {
    "plain": Case(),
    "no-keyring": Case(wrapper=("dbus-run-session", "--config-file={bus}", "--")),
    "no-network": Case(wrapper=("unshare", "--net")),
    "read-only-home": Case(wrapper=("unshare", "--mount"), keeps_projects=False),
    "slow-home": Case(wrapper=SLOW),
    "software-opengl": Case(environment={"LIBGL_ALWAYS_SOFTWARE": "1"}),
    "old-opengl": Case(environment={"MESA_GL_VERSION_OVERRIDE": "2.1", "MESA_GLSL_VERSION_OVERRIDE": "120"}),
    "no-opengl": Case(environment={"LIBGL_DRIVERS_PATH": "/nonexistent", "__EGL_VENDOR_LIBRARY_DIRS": "/nonexistent"}),
    "4k-at-200": Case(display="3840x2160", settings="Xft/DPI 196608\n"),
    "small-display": Case(display="1366x768"),
}


def picture(name):
    subprocess.run(["import", "-window", "root", f"{os.environ['FIRST_RUN_PICTURES']}-{name}.png"], check=True)


def walk(program_path, case):
    # These need the bus, so they are loaded in the display alone.
    from blind_walk import NotFound, Program, choose_folder, expect, outline, record, settle_review

    home = pathlib.Path(os.environ["FIRST_RUN_HOME"])
    shoot = home / "Shoots" / "Villa"
    record(shoot)
    if case == "read-only-home":
        # The home is read-only, and the footage lies on a disk that is mounted in it.
        footage = home / "Shoots"
        subprocess.run(["mount", "--bind", footage, footage], check=True)
        subprocess.run(["mount", "--rbind", home, home], check=True)
        subprocess.run(["mount", "-o", "remount,bind,ro", home], check=True)
    program = Program(program_path, home, home)
    try:
        program.find("page tab list", "Tools")
        picture("1-launcher")
        program.press("button", "Open Binnacle")
        program.find("button", "Choose Folder")
        picture("2-landing")
        choose_folder(program, "Shoots", "Villa")
        program.find("list", "Bins")
        program.inspect("the results")
        picture("3-results")
        settle_review(program)
        program.press("button", "Export")
        program.find("heading", "Event created")
        picture("4-event")
        expect((shoot / "Villa.fcpxml").is_file(), "the event")
        program.press("button", "Close", program.find("tool bar", "Window"))
        expect(program.process.wait(60) == 0, "an orderly end")
        program = Program(program_path, home, home)
        program.press("button", "Open Binnacle")
        program.press("button", "Projects")
        if CASES[case].keeps_projects:
            program.find("list item", "Villa", program.find("list", "Sorted shoots"))
        else:
            program.find("dialog", "Projects")
        picture("5-projects")
    except NotFound as missing:
        picture("failed")
        print(f"{case}: not found: {missing}", file=sys.stderr)
        print("\n".join(outline(program.window() or program.desktop)), file=sys.stderr)
        return 1
    finally:
        program.end()
    return 0


def meet(name, case, program_path, pictures):
    with tempfile.TemporaryDirectory() as scratch:
        home = pathlib.Path(scratch, "home")
        home.mkdir()
        desktop = pathlib.Path(scratch, "desktop")
        desktop.write_text(case.settings)
        services = pathlib.Path(scratch, "services")
        services.mkdir()
        shutil.copy(A_SERVICE_FOR_THE_WALK, services)
        bus = pathlib.Path(scratch, "bus.conf")
        bus.write_text(BARE_BUS.format(services=services))
        environment = dict(os.environ, LARKSPAN_DISPLAY=case.display, FIRST_RUN_HOME=str(home),
                           FIRST_RUN_PICTURES=str(pictures / name), **case.environment)
        start = time.monotonic()
        status = subprocess.run(
            [WITH_DISPLAY, "bash", "-c", 'cp "$1" "$LARKSPAN_DESKTOP_SETTINGS" && '
             'kill -HUP "$LARKSPAN_DESKTOP_SETTINGS_DAEMON" && shift && exec "$@"', "first_run", desktop,
             *(word.format(bus=bus) for word in case.wrapper), "/usr/bin/python3", "-B", HERE, "--walk", program_path, name],
            env=environment).returncode
        print(f"{name}: {'fine' if status == 0 else 'FAILED'}, {time.monotonic() - start:.0f} s", flush=True)
        return status


def main(arguments):
    if arguments[0] == "--walk":
        return walk(*arguments[1:])
    program_path, pictures, *names = arguments
    for tool in ("unshare", "strace", "import"):
        if not shutil.which(tool):
            sys.exit(f"first_run: {tool} is missing")
    folder = pathlib.Path(pictures).resolve()
    folder.mkdir(parents=True, exist_ok=True)
    return max(meet(name, CASES[name], program_path, folder) for name in names or CASES)


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
