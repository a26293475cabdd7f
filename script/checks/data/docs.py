#!/usr/bin/env python3
"""Parts of script/checks/docs that are awkward in a shell.

    docs.py links          relative links and pictures in Markdown files that lead nowhere
    docs.py commands       a line for each command of quorvane-sheet in the Markdown files: its arguments, separated by the
                           character 31
    docs.py uncovered      commands of other programs that no test is known for
    docs.py sheet FILE     the worksheet of docs/getting_started.md
"""

import csv
import re
import shlex
import subprocess
import sys
from pathlib import Path

sys.dont_write_bytecode = True
root = Path(__file__).resolve().parents[3]

# Commands that the check does not run itself, as they begin, and the check that runs them.
covered = {
    "script/demo": "demo",
    "script/test": "itself",
    "script/fuzz": "the tests of the fuzzers replay what it would run",
    "script/package": "installer",
    "script/pictures": "pictures",
    "script/lint": "a person",
    "regsvr32 Quorvane.dll": "registration",
    "regsvr32 PengRobinson.dll": "registration",
    "cscript //nologo services.vbs": "services",
    "start /wait quorvane-VERSION-setup.exe": "installer",
    'cd /d "%LOCALAPPDATA%\\Programs\\Quorvane"': "installer",
    "cd build/release": "release",
    "register.cmd": "installer",
    "unregister.cmd": "installer",
    "quorvane-sheet check Tarnwick.PengRobinson.1": "demo",
    'quorvane-sheet check "Tarnwick.PengRobinsonManager.1!Natural gas"': "package_checks",
}
programs = r"(quorvane-sheet|script/\w+|regsvr32|cscript|start|cd|set|cmake|\w+\.cmd)\b"


def documents():
    names = subprocess.run(["git", "-C", root, "ls-files", "-co", "--exclude-standard", "*.md"], check=True,
                           capture_output=True, text=True).stdout.split()
    return [root / name for name in names]


def prose_and_code(path):
    """(text outside code, lines of code blocks)"""
    prose, code, fenced = [], [], False
    for line in path.read_text(encoding="utf-8").splitlines():
        if line.lstrip().startswith("```"):
            fenced = not fenced
        elif fenced or line.startswith("    "):
            code.append(line.strip())
        else:
            prose.append(re.sub(r"`[^`]*`", "", line))
    return "\n".join(prose), code


def broken_links():
    count = 0
    for path in documents():
        for target in re.findall(r"\]\(([^)\s]+)\)", prose_and_code(path)[0]):
            file = target.partition("#")[0]
            # Pages of the help file are held together by script/checks/help.
            if not file or ":" in file or (path.parent.name == "pages" and file.endswith(".html")):
                continue
            count += 1
            if not (path.parent / file).exists():
                yield f"{path.relative_to(root)} leads to {target}, which is not there"
    if count < 20:
        yield "the documents have hardly any links"


def commands():
    """Each command once, without what stands in brackets in a summary and without comments."""
    seen = []
    for path in documents():
        for line in prose_and_code(path)[1]:
            command = re.sub(r"\s+#.*", "", line)
            if re.match(programs, command) and not re.search(r"[\[|]", command) and command not in seen:
                seen.append(command)
    return seen


def is_covered(command):
    return any(command.startswith(known) for known in covered)


def write_sheet(target):
    text = (root / "docs/getting_started.md").read_text(encoding="utf-8")
    formulas = re.findall(r"^ {8}(=.*)$", text, re.M)
    if len(formulas) != 3:
        sys.exit(f"docs/getting_started.md has {len(formulas)} formulas instead of 3")
    unit, compounds, equilibrium = formulas
    rows = [[""] * 4 for _ in range(6)] + [["", "0.04", "", ""] for _ in range(25)]
    rows[0][:2] = "unit", unit
    rows[0][3], rows[1][3], rows[3][3], rows[6][0] = "250", "3000000", equilibrium, compounds
    with open(target, "w", encoding="utf-8", newline="") as file:
        csv.writer(file).writerows(rows)


if __name__ == "__main__":
    what, *arguments = sys.argv[1:] or [""]
    if what == "links":
        problems = list(broken_links())
        print("\n".join(problems))
        sys.exit(bool(problems))
    elif what == "commands":
        for command in commands():
            if command.startswith("quorvane-sheet ") and not is_covered(command):
                print("\x1f".join(shlex.split(command.replace("\\", "\\\\"))[1:]))
    elif what == "uncovered":
        missing = [c for c in commands() if not c.startswith("quorvane-sheet ") and not is_covered(c)]
        print("\n".join(missing))
        sys.exit(bool(missing))
    elif what == "sheet":
        write_sheet(arguments[0])
    else:
        sys.exit(__doc__)
