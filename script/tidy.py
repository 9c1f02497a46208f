#!/usr/bin/env python3
"""Run clang-tidy over our own sources, and skip what was clean and hasn't changed since.

    tidy.py BUILD_FOLDER SOURCE…

A source is looked at again when it, a header of ours that it includes (as the build recorded), or a rule has changed.
"""
import concurrent.futures
import hashlib
import json
import os
import pathlib
import re
import shutil
import subprocess
import sys

TIDY = "clang-tidy-16"


def headers_by_source(build):
    """What the last build read for each source, without the system's headers."""
    root = pathlib.Path.cwd().resolve()
    deps = {}
    current = None
    listing = subprocess.run(["ninja", "-C", build, "-t", "deps"], capture_output=True, text=True, check=True).stdout
    for line in listing.splitlines():
        if line and not line.startswith(" "):
            current = []
        elif line.strip():
            path = pathlib.Path(build, line.strip()).resolve()
            if path.is_relative_to(root) and not path.is_relative_to(root / "build"):
                current.append(path)
                if path.suffix == ".cpp":
                    deps[path] = current
    return deps


def write_database(build, target):
    """Clang can't read GCC's precompiled header: name the header it was made of instead."""
    commands = json.loads(pathlib.Path(build, "compile_commands.json").read_text())
    plain = str(pathlib.Path("cmake/precompiled.h").resolve())
    for entry in commands:
        entry["command"] = re.sub(r"-include \S+/cmake_pch\.hxx", f"-include {plain}", entry["command"])
        entry["command"] = re.sub(r"-fsanitize=\S+|-fno-sanitize\S*|-fpch-preprocess|-Winvalid-pch|-Wno-maybe-uninitialized|-Wno-restrict", "", entry["command"])
    target.mkdir(parents=True, exist_ok=True)
    (target / "compile_commands.json").write_text(json.dumps(commands))


def main():
    build, sources = sys.argv[1], [pathlib.Path(name).resolve() for name in sys.argv[2:]]
    folder = pathlib.Path(build, "lint")
    write_database(build, folder)
    deps = headers_by_source(build)
    rules = pathlib.Path(".clang-tidy").read_bytes() + pathlib.Path(__file__).read_bytes()
    marks = folder / "clean"
    marks.mkdir(exist_ok=True)

    def mark_of(source):
        digest = hashlib.sha256(rules)
        for path in sorted({source, *deps.get(source, [])}):
            if path.exists():
                digest.update(path.read_bytes())
        return marks / f"{source.stem}-{digest.hexdigest()[:24]}"

    def check(source):
        run = subprocess.run([TIDY, "--quiet", "--warnings-as-errors=*", "-p", str(folder), str(source)],
                             capture_output=True, text=True)
        return source, run.returncode, run.stdout + run.stderr

    pending = [source for source in sources if not mark_of(source).exists()]
    print(f"{len(pending)} of {len(sources)} sources to look at", file=sys.stderr)
    failed = 0
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        for source, status, output in pool.map(check, pending):
            if status == 0:
                mark_of(source).touch()
            else:
                failed += 1
                print(output, file=sys.stderr)
    return 1 if failed else 0


if __name__ == "__main__":
    if shutil.which(TIDY) is None:
        sys.exit(f"{TIDY} is missing: run script/bootstrap")
    sys.exit(main())
