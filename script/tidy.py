#!/usr/bin/env python3
"""Run clang-tidy over our own sources, and skip what was clean and hasn't changed since.

    tidy.py BUILD_FOLDER SOURCE…

A source is looked at again when it, a header of ours that it includes (as the build recorded), or a rule has changed.
Most of clang-tidy's time goes to the system's headers, so many sources are written one after the other into one file
and looked at as one. A source whose names clash with an earlier one's goes into a later group. Where something is found,
the halves are looked at, down to the single source: only what is found there counts.
"""
import bisect
import concurrent.futures
import hashlib
import itertools
import json
import os
import pathlib
import re
import shlex
import shutil
import subprocess
import sys

TIDY = "clang-tidy-16"
AT_ONCE = 32  # sources in one run: more would leave a core idle at the end


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


def flags_by_source(build):
    """How clang reads each source: without what only GCC knows, and with the header that its precompiled one is of.

    GCC looks after names that hide others; in several sources at once they do so without harm.
    """
    plain = str(pathlib.Path("cmake/precompiled.h").resolve())
    flags = {}
    for entry in json.loads(pathlib.Path(build, "compile_commands.json").read_text()):
        command = re.sub(r"-include \S+/cmake_pch\.hxx", f"-include {plain}", entry["command"])
        command = re.sub(r"-fsanitize=\S+|-fno-sanitize\S*|-fpch-preprocess|-Winvalid-pch|-Wno-maybe-uninitialized"
                         r"|-Wno-restrict|-Wshadow|-o \S+|-c \S+", "", command)
        flags[pathlib.Path(entry["file"]).resolve()] = shlex.split(command)[1:]
    return flags


def main():
    build, sources = sys.argv[1], [pathlib.Path(name).resolve() for name in sys.argv[2:]]
    folder = pathlib.Path(build, "lint")
    marks = folder / "clean"
    marks.mkdir(parents=True, exist_ok=True)
    deps = headers_by_source(build)
    flags = flags_by_source(build)
    rules = pathlib.Path(".clang-tidy").read_bytes() + pathlib.Path(__file__).read_bytes()

    def mark_of(source):
        digest = hashlib.sha256(rules)
        for path in sorted({source, *deps.get(source, [])}):
            if path.exists():
                digest.update(path.read_bytes())
        return marks / f"{source.stem}-{digest.hexdigest()[:24]}"

    def joined(group):
        """One file with all sources of the group, and the line where each begins."""
        texts = [source.read_text() + "\n" for source in group]
        path = folder / f"{hashlib.sha256(''.join(map(str, group)).encode()).hexdigest()[:16]}.cpp"
        path.write_text("".join(texts))
        starts = itertools.accumulate((text.count("\n") for text in texts), initial=1)
        return path, list(starts)[:-1]

    def tidy(path, flags, *options):
        return subprocess.run([TIDY, "--quiet", "--config-file=.clang-tidy", *options, str(path), "--", *flags],
                              capture_output=True, text=True)

    def clashing(group):
        """The sources of a group that don't compile after those before them."""
        path, starts = joined(group)
        # No check alone is allowed; this one costs nothing.
        errors = tidy(path, flags[group[0]], "--checks=-*,misc-unused-alias-decls").stdout
        lines = map(int, re.findall(rf"^{re.escape(str(path))}:(\d+):\d+: error:", errors, re.MULTILINE))
        return {group[bisect.bisect_right(starts, line) - 1] for line in lines} - {group[0]}

    def findings(group):
        """What clang-tidy prints of the sources in the group, each looked at alone in the end; empty if they are clean."""
        run = tidy(group[0] if len(group) == 1 else joined(group)[0], flags[group[0]], "--warnings-as-errors=*")
        if run.returncode == 0:
            for source in group:
                mark_of(source).touch()
            return ""
        if len(group) == 1:
            return f"{group[0]}:\n{run.stdout}{run.stderr}\n"
        middle = len(group) // 2
        return findings(group[:middle]) + findings(group[middle:])

    def findings_without_clashes(group):
        apart = clashing(group) if len(group) > 1 else set()
        found = findings([source for source in group if source not in apart])
        return found + (findings_without_clashes([source for source in group if source in apart]) if apart else "")

    alike = {}
    for source in sources:
        if not mark_of(source).exists():
            alike.setdefault(tuple(flags[source]), []).append(source)
    groups = [group[i:i + AT_ONCE] for group in alike.values() for i in range(0, len(group), AT_ONCE)]
    print(f"{sum(map(len, groups))} of {len(sources)} sources to look at", file=sys.stderr)
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        found = "".join(pool.map(findings_without_clashes, sorted(groups, key=len, reverse=True)))
    print(found, end="", file=sys.stderr)
    return 1 if found else 0


if __name__ == "__main__":
    if shutil.which(TIDY) is None:
        sys.exit(f"{TIDY} is missing: run script/bootstrap")
    sys.exit(main())
