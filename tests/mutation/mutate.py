#!/usr/bin/env python3
"""Breaks a source file in one small way at a time and reports which breaks the tests of its folder miss.

    tests/mutation/mutate.py output/FileCopy.cpp core/bins/BinRules.cpp

A mutant that fails a test, crashes it or hangs it is caught; one that passes all tests survives, and its diff is
printed: either a test is missing or the change makes no difference. Nothing of the checkout is changed. All mutants of
function bodies are compiled into one object that an environment variable switches, which is linked in front of the
folder's library; those of declarations are compiled one by one. The test programs are run directly, the tests that
caught the last mutants first. Most tests wait for the disk: TMPDIR can name a quicker one.

Results are kept in the build folder. A run that was ended goes on where it was, and a file that was changed begins anew.
After tests were added, --again tries the survivors. Runs on different files can go on side by side.
"""
import argparse
import difflib
import hashlib
import json
import os
import random
import re
import shlex
import shutil
import signal
import subprocess
import sys
import tempfile
import time
from dataclasses import dataclass
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]

TOKEN = re.compile(
    r"""(?P<skip>\s+|//[^\n]*|/\*.*?\*/|^[ \t]*\#(?:[^\n]*\\\n)*[^\n]*)
      |(?P<text>R"(?P<mark>[^(\s]*)\(.*?\)(?P=mark)"|"(?:\\.|[^"\\\n])*"|'(?:\\.|[^'\\\n])*')
      |(?P<number>\d(?:'?[\w.])*)
      |(?P<word>[A-Za-z_]\w*)
      |(?P<sign><=>|<<=|>>=|\.\.\.|::|->|\+\+|--|&&|\|\||[=!<>+\-*/%&|^]=|<<|.)""",
    re.S | re.M | re.X,
)
PAIRS = {"(": ")", "[": "]", "{": "}"}
SWAPS = {
    "==": "!=", "!=": "==", "<=": "<", ">=": ">", "+=": "-=", "-=": "+=", "++": "--", "--": "++",
    "true": "false", "false": "true",
}
# Signs that mean something else (a template, a reference, a pointer) unless they stand between blanks.
SPACED_SWAPS = {"<": "<=", ">": ">=", "&&": "||", "||": "&&", "+": "-", "-": "+", "*": "/", "/": "*", "%": "*",
                "&": "|", "|": "&"}
ASSIGNMENTS = {"=", "+=", "-=", "*=", "/=", "%=", "&=", "|=", "^=", "<<=", ">>=", "++", "--"}
NO_EXPRESSION = {
    "return", "const", "constexpr", "auto", "using", "namespace", "class", "struct", "enum", "union", "if", "for",
    "while", "switch", "case", "default", "do", "static", "template", "typename", "public", "private", "protected",
    "typedef", "friend", "else", "try", "catch", "goto", "virtual", "explicit", "inline", "operator", "Q_OBJECT",
}


@dataclass(frozen=True)
class Token:
    kind: str
    text: str
    start: int
    end: int


@dataclass(frozen=True)
class Mutant:
    start: int  # what is replaced, in characters of the file
    end: int
    text: str
    what: str

    def key(self):
        return f"{self.start}-{self.end}:{self.text}"

    def applied(self, source):
        return source[: self.start] + self.text + source[self.end :]


def tokens_of(source):
    return [
        Token(match.lastgroup if match.lastgroup != "mark" else "text", match[0], match.start(), match.end())
        for match in TOKEN.finditer(source)
        if match.lastgroup != "skip"
    ]


class Finder:
    """All mutants of a source text."""

    def __init__(self, source):
        self.source = source
        self.tokens = tokens_of(source)
        self.partner = {}  # of each bracket, by index
        open_brackets = []
        for i, token in enumerate(self.tokens):
            if token.kind == "sign" and token.text in PAIRS:
                open_brackets.append(i)
            elif token.kind == "sign" and token.text in PAIRS.values() and open_brackets:
                self.partner[open_brackets[-1]] = i
                self.partner[i] = open_brackets.pop()

    def text(self, i):
        return self.tokens[i].text if 0 <= i < len(self.tokens) else ""

    def between(self, first, last):
        return self.source[self.tokens[first].start : self.tokens[last].end]

    def replaced(self, first, last, text, what):
        return Mutant(self.tokens[first].start, self.tokens[last].end, text, what)

    def after(self, i):
        """The index behind a token, or behind the bracket that it opens."""
        return self.partner.get(i, i) + 1 if self.text(i) in PAIRS else i + 1

    def end_of(self, i, ends):
        """The first token from i on that is one of the ends and lies in no bracket of its own."""
        while i < len(self.tokens) and self.text(i) not in ends:
            if self.text(i) in PAIRS.values():
                return i
            i = self.after(i)
        return i

    def all(self):
        mutants = []
        for i, token in enumerate(self.tokens):
            mutants += self.swaps(i, token)
            if token.text in ("if", "while") and self.text(i + 1) == "(":
                mutants += self.negated_condition(i + 1)
            if token.text == "return":
                mutants += self.other_return(i)
            if token.text == "?":
                mutants += self.other_branch(i)
            if self.starts_statement(i):
                mutants += self.dropped_statement(i)
        unique = {mutant.key(): mutant for mutant in mutants}
        return sorted(unique.values(), key=lambda mutant: (mutant.start, mutant.end, mutant.text))

    def swaps(self, i, token):
        spaced = self.source[token.start - 1 : token.start].isspace() and self.source[token.end : token.end + 1].isspace()
        if token.kind in ("sign", "word") and token.text in SWAPS:
            yield self.replaced(i, i, SWAPS[token.text], f"{token.text} becomes {SWAPS[token.text]}")
        elif token.kind == "sign" and token.text in SPACED_SWAPS and spaced:
            yield self.replaced(i, i, SPACED_SWAPS[token.text], f"{token.text} becomes {SPACED_SWAPS[token.text]}")
            if token.text in "<>":
                other = ">" if token.text == "<" else "<"
                yield self.replaced(i, i, other, f"{token.text} becomes {other}")
        elif token.text == "!" and not spaced:
            yield self.replaced(i, i, "", "negation dropped")
        elif token.kind == "number":
            yield from self.other_number(i, token.text)

    def other_number(self, i, text):
        digits = re.fullmatch(r"(0[xX][0-9a-fA-F']+|[\d']+)(\.\d*)?([a-zA-Z]*)", text)
        if not digits:
            return
        whole, fraction, suffix = digits.groups()
        plain = whole.replace("'", "")
        base = 16 if plain[:2] in ("0x", "0X") else 8 if len(plain) > 1 and plain[0] == "0" and not fraction else 10
        value = int(plain, base)
        for other in {value + 1, max(value - 1, 0)} - {value}:
            yield self.replaced(i, i, f"{other}{fraction or ''}{suffix}", f"{text} becomes {other}{fraction or ''}")

    def negated_condition(self, opening):
        closing = self.partner.get(opening)
        if closing is None:
            return
        first = opening + 1
        while True:  # behind the last initializer
            end = self.end_of(first, {";"})
            if end >= closing:
                break
            first = end + 1
        if first >= closing:
            return
        signs = [self.text(i) for i in range(first, closing)]
        if signs.count("==") + signs.count("!=") == 1 and not {"&&", "||", "!"} & set(signs):
            return  # swapping the sign is the same
        if signs[0] == "!" and not {"&&", "||", "?"} & set(signs):
            return  # dropping it is the same
        condition = self.between(first, closing - 1)
        declared = re.match(r"(?:const\s+)?[\w:<>,\s*&]+?[\s*&](\w+)\s*=[^=]", condition)
        text = f"{condition}; !{declared[1]}" if declared else f"!({condition})"
        yield self.replaced(first, closing - 1, text, "condition negated")

    def other_return(self, i):
        end = self.end_of(i + 1, {";"})
        if self.text(end) != ";" or end == i + 1:
            return
        value = self.between(i + 1, end - 1)
        if value not in ("{}", "true", "false"):
            yield self.replaced(i + 1, end - 1, "{}", "returns nothing")
        inner = i + 1
        while inner < end:
            if self.text(inner) in ("==", "!=", "<=", ">=", "&&", "||", "!"):
                yield self.replaced(i + 1, end - 1, f"!({value})", "return negated")
                return
            inner = self.after(inner)

    def other_branch(self, i):
        colon = self.end_of(i + 1, {":"})
        end = self.end_of(colon + 1, {";", ",", ":"})
        if self.text(colon) == ":" and end > colon + 1:
            first = self.between(i + 1, colon - 1)
            second = self.between(colon + 1, end - 1)
            yield self.replaced(i + 1, end - 1, f"{second} : {first}", "branches swapped")

    def bodies(self):
        """The bodies of functions, as pairs of the tokens that open and close them."""
        head = []  # of the declaration so far, without what is in brackets
        i = 0
        while i < len(self.tokens):
            text = self.text(i)
            if text == "{" and "(" not in head and {"namespace", "class", "struct"} & set(head):
                head = []
                i += 1
                continue
            if text == "{" and "(" in head and not {"=", "constexpr", "enum"} & set(head):
                yield i, self.partner[i]
                head = []
            else:
                head = [] if text in (";", "}") else head + [text]
            i = self.after(i)

    def starts_statement(self, i):
        before = self.text(i - 1)
        if before in (";", "{", "}", "else"):
            return True
        opening = self.partner.get(i - 1) if before == ")" else None
        return opening is not None and self.text(opening - 1) in ("if", "for", "while")

    def dropped_statement(self, i):
        token = self.tokens[i]
        if token.text in ("break", "continue", "return") and self.text(i + 1) == ";":
            yield self.replaced(i, i, "", f"{token.text} dropped")
            return
        if token.text not in ("::", "++", "--", "*", "(") and (token.kind != "word" or token.text in NO_EXPRESSION):
            return
        end = self.end_of(i, {";"})
        if self.text(end) != ";" or end == i or not self.is_expression(i, end):
            return
        yield self.replaced(i, end - 1, "", "statement dropped")

    def is_expression(self, i, end):
        """Whether tokens are a call or an assignment and no declaration, in which two names follow each other."""
        if self.text(i) in ("++", "--", "throw", "delete", "co_await", "co_yield", "co_return", "Q_EMIT"):
            return True
        called = False
        j = i
        while j < end:
            text = self.text(j)
            if text in ASSIGNMENTS:
                return True
            if self.tokens[j].kind == "word" and j > i and self.tokens[j - 1].kind == "word":
                return False
            if self.tokens[j].kind == "word" and j > i and self.text(j - 1) in (">", "&", "*", "]") and not called:
                return False
            called = called or text == "("
            j = self.after(j)
        return called


def output_of(command):
    done = subprocess.run(command, text=True, errors="replace", stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
    if done.returncode != 0:
        sys.exit(done.stdout)
    return done.stdout


def test_programs(build, file):
    """Names of the tests of a file's library that are programs of ours, as their targets are. Labels are library names."""
    folders = "|".join(map(re.escape, file.parent.parts))
    tests = json.loads(output_of(["ctest", "--test-dir", str(build), "-L", f"^({folders})$", "--show-only=json-v1"]))
    targets = output_of(["ninja", "-C", str(build), "-t", "targets", "all"])
    names = sorted({re.sub(r"_\d+$", "", test["name"]) for test in tests["tests"]})  # of parted ones the whole
    return [name for name in names if re.search(rf"^{re.escape(name)}: ", targets, re.M)]


class TestProgram:
    """One test program, which runs as ctest would run it."""

    def __init__(self, build, name, filter):
        self.build = build
        tests = json.loads(output_of(["ctest", "--test-dir", str(build), "-R", f"^{name}(_1)?$", "--show-only=json-v1"]))
        [test] = tests["tests"]
        properties = {entry["name"]: entry["value"] for entry in test["properties"]}
        [self.path] = [part for part in test["command"] if part.endswith("/" + name)]
        self.name = name
        self.command = test["command"]
        self.folder = properties["WORKING_DIRECTORY"]
        self.environment = dict(os.environ, GTEST_FAIL_FAST="1")
        self.environment.update(variable.split("=", 1) for variable in properties.get("ENVIRONMENT", [])
                                if not variable.startswith(("GTEST_TOTAL_SHARDS=", "GTEST_SHARD_INDEX=")))
        options = self.environment.get("ASAN_OPTIONS", "")
        self.environment["ASAN_OPTIONS"] = f"{options}:hard_rss_limit_mb=4000"  # for what never stops growing
        self.filter = filter
        commands = output_of(["ninja", "-C", str(build), "-t", "commands", name]).splitlines()
        self.output = f" -o {os.path.relpath(self.path, build)} "
        [self.link_command] = [line for line in commands if self.output in line]
        self.milliseconds = {}  # of each test
        self.recent = []  # tests that caught something, the last first

    def link(self, obj, program):
        """What the object defines is no longer taken from the library behind it."""
        command = self.link_command.replace(self.output, f" {shlex.quote(str(obj))} -o {shlex.quote(program)} ")
        return subprocess.run(command, shell=True, cwd=self.build, capture_output=True).returncode == 0

    def measure(self, program, scratch):
        """Runs the program without a mutation, which must pass."""
        outcome, test = self.run(program, self.filter, scratch, 0)
        if outcome != "survived":
            sys.exit(f"{self.name}: {test} fails without a mutation")

    def judge(self, program, scratch, number):
        quick = [test for test, time in self.milliseconds.items() if time < 100]
        slow = [test for test in self.milliseconds if test not in quick]
        for tests in (quick, slow):
            recent = [test for test in self.recent if test in tests]
            for some in (recent[:8], tests):
                if some:
                    outcome, test = self.run(program, ":".join(some), scratch, number)
                    if outcome != "survived":
                        if test:
                            self.recent = [test] + [other for other in self.recent if other != test]
                        return outcome, test
        return "survived", None

    def run(self, program, tests, scratch, number):
        """The outcome, and the test that brought it. A test may take several times as long as it did at first."""
        clear(scratch)
        scratch.mkdir(parents=True)
        process = subprocess.Popen(
            [program if part == self.path else part for part in self.command], stdout=subprocess.PIPE,
            stderr=subprocess.DEVNULL, text=True, errors="replace", start_new_session=True, cwd=self.folder,
            env=dict(self.environment, GTEST_FILTER=tests, TMPDIR=str(scratch), LARKSPAN_MUTANT=str(number)),
        )
        test, failed = None, None
        try:
            signal.alarm(60)
            for line in process.stdout:
                if begun := re.match(r"\[ RUN      \] (\S+)", line):
                    test = begun[1]
                    signal.alarm(10 + 10 * self.milliseconds.get(test, 60_000) // 1000)
                elif passed := re.match(r"\[       OK \] (\S+) \((\d+) ms\)", line):
                    self.milliseconds.setdefault(passed[1], int(passed[2]))
                elif line.startswith("[  FAILED  ]"):
                    failed = failed or test  # and the program ends, after it has cleaned up
            return ("survived" if process.wait() == 0 else "killed"), failed or test
        except TimeoutError:
            return ("killed" if failed else "timed out"), failed or test
        finally:
            signal.alarm(0)
            end(process)


def clear(scratch):
    """Removes what a program left behind that didn't end by itself, disks that it mounted among it."""
    for mount in reversed(Path("/proc/self/mounts").read_text().splitlines()):
        if mount.split()[1].startswith(str(scratch)):
            subprocess.run(["umount", "--lazy", mount.split()[1]])
    for loop in output_of(["losetup", "--list", "--noheadings", "--output", "NAME,BACK-FILE"]).splitlines():
        if str(scratch) in loop:
            subprocess.run(["losetup", "--detach", loop.split()[0]])
    shutil.rmtree(scratch, ignore_errors=True)


def end(process):
    """Ends a test program with all that it started."""
    for number in (signal.SIGTERM, signal.SIGKILL):
        try:
            os.killpg(process.pid, number)
            process.wait(timeout=2)
        except (ProcessLookupError, subprocess.TimeoutExpired):
            pass
    process.wait()


def raise_timeout(*_):
    raise TimeoutError


SWITCH = """#include <cstdlib>
static int larkspanMutant()
{
    static const int number = std::atoi(std::getenv("LARKSPAN_MUTANT"));
    return number;
}
"""


def combined(source, mutants):
    """The source with several mutants, by number, in the bodies of its functions: each body stands there once more for
    each. The line directives make the compiler name the mutant that an error is in."""
    finder = Finder(source)
    text = source
    for first, last in reversed(list(finder.bodies())):
        start, end = finder.tokens[first].start, finder.tokens[last].end
        inside = {number: mutant for number, mutant in mutants.items() if start < mutant.start and mutant.end < end}
        cases = "".join(
            f'\ncase {number}:\n#line 1 "mutant-{number}"\n'
            f"{source[start : mutant.start]}{mutant.text}{source[mutant.end : end]}\nbreak;"
            for number, mutant in inside.items()
        )
        if inside:
            body = f"{{ switch (::larkspanMutant()) {{{cases}\ndefault:\n#line 1 \"default\"\n{source[start:end]}\n}} }}"
            text = text[:start] + body + text[end:]
    return SWITCH + text


class MutatedFile:
    """Compiles mutants of one file as the build compiles the file, and judges them by test programs."""

    def __init__(self, build, file, programs):
        self.build = build
        self.scratch = build / "mutation" / str(file).replace("/", "-")
        self.scratch.mkdir(parents=True, exist_ok=True)
        self.temporary = Path(tempfile.gettempdir()) / f"larkspan-mutants-{os.getpid()}"
        self.source = (ROOT / file).read_text()
        self.programs = programs
        self.mutated = self.scratch / file.name
        self.object = self.scratch / "mutant.o"
        commands = json.loads((build / "compile_commands.json").read_text())
        [entry] = [entry for entry in commands if entry["file"] == str(ROOT / file)]
        self.command = [*shlex.split(entry["command"]), "-O0", "-fno-sanitize=all", "-w"]
        self.command[self.command.index("-o") + 1] = str(self.object)
        self.command[self.command.index(str(ROOT / file))] = str(self.mutated)
        self.switched = {}  # the mutants that are in the programs, by number
        self.invalid = []

    def program(self, program, kind):
        # Beside the real one, since a program may look for files around it.
        return f"{program.path}.{self.scratch.name}.{kind}"

    def compile(self, text):
        """The errors."""
        self.mutated.write_text(text)
        environment = dict(os.environ, CCACHE_DISABLE="1")
        done = subprocess.run(self.command, cwd=self.build, env=environment, stderr=subprocess.PIPE, text=True)
        return done.stderr if done.returncode != 0 else ""

    def combine(self, mutants):
        """Builds the test programs with all mutants in them that stand in a function's body."""
        finder = Finder(self.source)
        spans = [(finder.tokens[first].start, finder.tokens[last].end) for first, last in finder.bodies()]
        inside = [m for m in mutants if any(start < m.start and m.end < end for start, end in spans)]
        self.switched = dict(enumerate(inside, 1))
        while errors := self.compile(combined(self.source, self.switched)):
            numbers = {int(number) for number in re.findall(r"mutant-(\d+):", errors)} & set(self.switched)
            if not numbers:
                sys.exit(errors)
            self.invalid += [self.switched.pop(number) for number in numbers]
        for program in self.programs:
            if not program.link(self.object, self.program(program, "all")):
                sys.exit(f"{program.name} can't be linked")
            if not program.milliseconds:
                program.measure(self.program(program, "all"), self.temporary)
        self.programs.sort(key=lambda program: sum(program.milliseconds.values()))

    def judge(self, mutant):
        """The outcome, and the test that brought it."""
        if mutant in self.invalid:
            return "invalid", None
        number = next((number for number, other in self.switched.items() if other == mutant), 0)
        if number == 0 and self.compile(mutant.applied(self.source)):
            return "invalid", None
        for program in self.programs:
            path = self.program(program, "all" if number else "one")
            if number == 0 and not program.link(self.object, path):
                return "invalid", None
            outcome, test = program.judge(path, self.temporary, number)
            if outcome != "survived":
                return outcome, test
        return "survived", None


class Results:
    """The outcome of each mutant of one file and the test that brought it, on disk. Begins anew once the file has changed."""

    def __init__(self, build, file, source):
        self.path = build / "mutation" / (str(file).replace("/", "-") + ".json")
        self.source = hashlib.sha256(source.encode()).hexdigest()
        self.outcomes = {}
        if self.path.exists():
            stored = json.loads(self.path.read_text())
            if stored["source"] == self.source:
                self.outcomes = stored["outcomes"]

    def forget(self, kinds):
        self.outcomes = {key: outcome for key, outcome in self.outcomes.items() if outcome[0] not in kinds}

    def save(self):
        self.path.parent.mkdir(parents=True, exist_ok=True)
        self.path.write_text(json.dumps({"source": self.source, "outcomes": self.outcomes}))


def diff(file, source, mutant):
    lines = difflib.unified_diff(
        source.splitlines(), mutant.applied(source).splitlines(), str(file), f"{file} ({mutant.what})", n=1, lineterm=""
    )
    return "\n".join(lines)


def report(file, source, mutants, outcomes):
    counts = {kind: 0 for kind in ("killed", "timed out", "survived", "invalid")}
    for mutant in mutants:
        if mutant.key() in outcomes:
            counts[outcomes[mutant.key()][0]] += 1
    for mutant in mutants:
        if outcomes.get(mutant.key(), [""])[0] == "survived":
            print(diff(file, source, mutant), "\n")
    caught = counts["killed"] + counts["timed out"]
    judged = caught + counts["survived"]
    share = f"{100 * caught / judged:.0f} %" if judged else "none"
    print(
        f"{file}: {share} ({caught} of {judged} caught, {counts['timed out']} of them by time; {counts['invalid']} "
        f"didn't compile; {sum(counts.values())} of {len(mutants)} tried)"
    )


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("files", nargs="+", type=Path, help="source files, from the root of the checkout")
    parser.add_argument("--build", type=Path, default=ROOT / "build" / "dev", help="a configured build; build/dev if not said")
    parser.add_argument("--target", action="append", help="a test program; all of the file's folder if none is named")
    parser.add_argument("--filter", default="*", help="GoogleTest's pattern of the tests to run")
    parser.add_argument("--sample", type=int, help="this many mutants of each file, drawn at random")
    parser.add_argument("--seed", type=int, default=1, help="of the draw")
    parser.add_argument("--minutes", type=float, help="stop after so long; the next run goes on")
    parser.add_argument("--again", action="store_true", help="try the survivors again, after tests were added")
    parser.add_argument("--list", action="store_true", help="only list the mutants")
    parser.add_argument("--report", action="store_true", help="only tell what is known")
    arguments = parser.parse_args()
    arguments.build = arguments.build.resolve()
    signal.signal(signal.SIGTERM, lambda *_: sys.exit("ended"))
    signal.signal(signal.SIGALRM, raise_timeout)
    end_time = time.monotonic() + (arguments.minutes or 1e9) * 60

    programs = {}  # by name
    for file in arguments.files:
        source = (ROOT / file).read_text()
        mutants = Finder(source).all()
        if arguments.sample and arguments.sample < len(mutants):
            chosen = random.Random(arguments.seed).sample(mutants, arguments.sample)
            mutants = [mutant for mutant in mutants if mutant in chosen]
        if arguments.list:
            for mutant in mutants:
                print(diff(file, source, mutant), "\n")
            print(f"{file}: {len(mutants)} mutants")
            continue
        results = Results(arguments.build, file, source)
        if arguments.report:
            report(file, source, mutants, results.outcomes)
            continue
        if arguments.again:
            results.forget({"survived"})
        left = [mutant for mutant in mutants if mutant.key() not in results.outcomes]
        if left:
            names = arguments.target or test_programs(arguments.build, file)
            output_of(["cmake", "--build", str(arguments.build), "-j2", "--target", *names])
            for name in set(names) - set(programs):
                programs[name] = TestProgram(arguments.build, name, arguments.filter)
            mutated = MutatedFile(arguments.build, file, [programs[name] for name in names])
            mutated.combine(left)
        for number, mutant in enumerate(left, 1):
            if time.monotonic() > end_time:
                break
            outcome, test = mutated.judge(mutant)
            results.outcomes[mutant.key()] = [outcome, test]
            results.save()
            line = source.count("\n", 0, mutant.start) + 1
            print(f"{number}/{len(left)} {file}:{line} {mutant.what}: {outcome} {test or ''}", file=sys.stderr, flush=True)
        report(file, source, mutants, results.outcomes)
        if time.monotonic() > end_time:
            break


if __name__ == "__main__":
    main()
