#!/usr/bin/env python3
"""Breaks a source file in one small way at a time and tells which breaks the tests of its folder notice.

    tests/mutation/mutate.py output/FileCopy.cpp core/BinRules.cpp

A mutant that the tests fail on is killed; one that passes them all survives, and its diff is printed: either a test is
missing or the change makes no difference. Works on a copy of the tree in build/mutation, built without optimization
or sanitizers. Results are kept there: a run that was ended goes on where it was, and a file that was changed begins
anew. After tests were added, or a --filter left some out, --again tries the survivors. Run by hand: a file takes from
minutes to hours.
"""
import argparse
import difflib
import hashlib
import json
import os
import random
import re
import shutil
import signal
import subprocess
import sys
import time
from dataclasses import dataclass
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
WORK = ROOT / "build" / "mutation"
TREE = WORK / "tree"
BUILD = WORK / "cmake"

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
        if self.text(i) in ("++", "--", "throw", "delete", "co_await", "co_yield", "co_return"):
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


def run(command, timeout=None, **more):
    """Exit status and output; 'timeout' instead of the status if it took longer. Ends what it started."""
    process = subprocess.Popen(
        command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, errors="replace",
        start_new_session=True, **more,
    )
    try:
        output, _ = process.communicate(timeout=timeout)
        return process.returncode, output
    except BaseException as error:
        os.killpg(process.pid, signal.SIGTERM)  # ninja ends its compilers then
        try:
            process.wait(timeout=5)
        except subprocess.TimeoutExpired:
            os.killpg(process.pid, signal.SIGKILL)
            process.wait()
        if isinstance(error, subprocess.TimeoutExpired):
            return "timeout", ""
        raise


def refresh_tree():
    """Brings the copy of the tree up to date; what didn't change keeps its time, so that little is built anew."""
    listed = subprocess.run(
        ["git", "ls-files", "-z", "--cached", "--others", "--exclude-standard"], cwd=ROOT, check=True,
        capture_output=True,
    ).stdout.decode().split("\0")
    wanted = {name for name in listed if name and (ROOT / name).is_file()}
    for name in wanted:
        source, copy = ROOT / name, TREE / name
        if not copy.exists() or copy.read_bytes() != source.read_bytes():
            copy.parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(source, copy)
    for copy in list(TREE.rglob("*")):
        if copy.is_file() and str(copy.relative_to(TREE)) not in wanted:
            copy.unlink()


def configure():
    if (BUILD / "build.ninja").exists():
        return
    deps = os.environ.get("LARKSPAN_DEPS", str(ROOT / "build" / "deps"))
    status, output = run([
        "cmake", "-S", str(TREE), "-B", str(BUILD), "-G", "Ninja", "-DCMAKE_BUILD_TYPE=Mutation",
        "-DCMAKE_CXX_FLAGS=-O0 -w", f"-DLARKSPAN_DEPS={deps}",
    ])
    if status != 0:
        sys.exit(output)


def tests_of(folder):
    """Names of the tests with a folder's label that are programs of ours, as their targets are."""
    status, output = run(["ctest", "--test-dir", str(BUILD), "-L", f"^{folder}$", "--show-only=json-v1"])
    if status != 0:
        sys.exit(output)
    names = [test["name"] for test in json.loads(output)["tests"]]
    _, targets = run(["ninja", "-C", str(BUILD), "-t", "targets", "all"])
    return [name for name in names if re.search(rf"^{re.escape(name)}: ", targets, re.M)]


def build(targets, timeout=None):
    return run(["cmake", "--build", str(BUILD), "-j2", "--target", *targets], timeout)


def test(names, tests, timeout=None):
    environment = dict(os.environ, GTEST_FAIL_FAST="1", GTEST_FILTER=tests)
    pattern = "^(" + "|".join(map(re.escape, names)) + ")$"
    return run(
        ["ctest", "--test-dir", str(BUILD), "-R", pattern, "--stop-on-failure", "--output-on-failure"], timeout,
        env=environment,
    )


class Results:
    """What became of each mutant of one file, kept on disk. Begins anew once the file has changed."""

    def __init__(self, file, source):
        self.path = WORK / "results" / (str(file).replace("/", "-") + ".json")
        self.source = hashlib.sha256(source.encode()).hexdigest()
        self.outcomes = {}
        if self.path.exists():
            stored = json.loads(self.path.read_text())
            if stored["source"] == self.source:
                self.outcomes = stored["outcomes"]

    def forget(self, kinds):
        self.outcomes = {key: outcome for key, outcome in self.outcomes.items() if outcome not in kinds}

    def save(self):
        self.path.parent.mkdir(parents=True, exist_ok=True)
        self.path.write_text(json.dumps({"source": self.source, "outcomes": self.outcomes}))


def diff(file, source, mutant):
    lines = difflib.unified_diff(
        source.splitlines(), mutant.applied(source).splitlines(), str(file), f"{file} ({mutant.what})", n=1, lineterm=""
    )
    return "\n".join(lines)


def judge(file, mutant, source, targets, tests, limit):
    (TREE / file).write_text(mutant.applied(source))
    try:
        status, _ = build(targets, timeout=600)
        if status != 0:
            return "invalid"
        status, _ = test(targets, tests, timeout=limit)
        return "survived" if status == 0 else "killed" if status != "timeout" else "timed out"
    finally:
        (TREE / file).write_text(source)


def report(file, source, mutants, outcomes):
    counts = {kind: 0 for kind in ("killed", "timed out", "survived", "invalid")}
    for mutant in mutants:
        if mutant.key() in outcomes:
            counts[outcomes[mutant.key()]] += 1
    for mutant in mutants:
        if outcomes.get(mutant.key()) == "survived":
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
    parser.add_argument("--target", action="append", help="a test program; all of the file's folder if none is named")
    parser.add_argument("--filter", default="*", help="GoogleTest's pattern of the tests to run; quick ones first")
    parser.add_argument("--sample", type=int, help="this many mutants of each file, drawn at random")
    parser.add_argument("--seed", type=int, default=1, help="of the draw")
    parser.add_argument("--minutes", type=float, help="stop after so long; the next run goes on")
    parser.add_argument("--again", action="store_true", help="try the survivors again, after tests were added")
    parser.add_argument("--list", action="store_true", help="only list the mutants")
    parser.add_argument("--report", action="store_true", help="only tell what is known")
    arguments = parser.parse_args()
    signal.signal(signal.SIGTERM, lambda *_: sys.exit("ended"))
    end = time.monotonic() + (arguments.minutes or 1e9) * 60

    if not arguments.list and not arguments.report:
        refresh_tree()
        configure()
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
        results = Results(file, source)
        if arguments.report:
            report(file, source, mutants, results.outcomes)
            continue
        targets = arguments.target or tests_of(file.parts[0])
        if arguments.again:
            results.forget({"survived"})
        left = [mutant for mutant in mutants if mutant.key() not in results.outcomes]
        if left:
            status, output = build(targets)
            if status != 0:
                sys.exit(output)
            start = time.monotonic()
            status, output = test(targets, arguments.filter)
            if status != 0:
                sys.exit(f"the tests fail without a mutation:\n{output}")
            limit = 10 + 3 * (time.monotonic() - start)
        for number, mutant in enumerate(left, 1):
            if time.monotonic() > end:
                break
            outcome = judge(file, mutant, source, targets, arguments.filter, limit)
            results.outcomes[mutant.key()] = outcome
            results.save()
            line = source.count("\n", 0, mutant.start) + 1
            print(f"{number}/{len(left)} {file}:{line} {mutant.what}: {outcome}", file=sys.stderr, flush=True)
        report(file, source, mutants, results.outcomes)
        if time.monotonic() > end:
            break


main()
