#!/usr/bin/env python3
"""Parts of script/checks/docs that are awkward in a shell.

    docs.py links          relative links and pictures in Markdown files that lead nowhere
    docs.py commands       a line for each command of quorvane-sheet in the Markdown files: its arguments, separated by the
                           character 31
    docs.py uncovered      commands that no check runs, and lines of code that are neither commands nor formulas nor known
                           quotations
    docs.py by_a_person    commands that no check runs, with the reason
    docs.py unattached     worksheets of examples/ that do not say in their second line which packages to attach
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

# Commands that the check does not run itself: the check in script/checks that runs them, and how.
covered = {
    "script/demo": ("demo", '"$root/script/demo" >'),
    "script/package": ("release", '"$root/script/package" >'),
    "cscript //nologo services.vbs result.txt enthalpy density fugacity.Dtemperature": ("services", "examples/services.vbs"),
    "start /wait quorvane-VERSION-setup.exe /S": ("release", "documented '## For yourself'"),
    'cd /d "%LOCALAPPDATA%\\Programs\\Quorvane"': ("release", "documented '## For yourself'"),
    "start /wait quorvane-VERSION-setup.exe /S /D=C:\\Tools\\Quorvane": ("release", "documented '## For many computers'"),
    "start /wait quorvane-VERSION-setup.exe /uninstall": ("release", "documented '## For many computers'"),
    "register.cmd": ("release", "documented '### Without the setup program'"),
    "unregister.cmd": ("release", "documented '### Without the setup program'"),
    "sha256sum --check SHA256SUMS": ("release", "documented '### Checking what you got'"),
    "quorvane-sheet check Tarnwick.PengRobinson.1": ("demo", '"$root/script/demo" check >'),
    'quorvane-sheet check "Tarnwick.PengRobinsonManager.1!Natural gas"': ("package_checks", '"$manager!Natural gas"'),
}
# Commands that no check runs, and why: who changes them has to try them.
by_a_person = {
    "script/test": "it runs the checks",
    "script/lint": "it takes an hour",
    "script/soak": "it takes ten minutes",
    "script/soak 20000": "as above",
    "script/coverage": "it tells which lines the tests run",
    "script/coverage worksheet_test conformance_test": "as above",
    "WINEPREFIX=$PWD/build/wine WINEDEBUG=-all wine build/mingw-release/bin/random_calls_test.exe </dev/null":
        "the tests run the program",
    "script/fuzz": "it runs until someone ends it; the tests of the fuzzers replay what it found",
    "script/fuzz csv 600": "as above",
    "script/fuzz package_state 1800": "as above",
    "cd build/release": "a step of a shell",
    "git status --porcelain": "of a release",
    "git clone -q . build/release": "of a release",
    "(cd dist && sha256sum --check SHA256SUMS)": "of a release",
    'git tag -a vVERSION -m "Quorvane VERSION"': "of a release",
    "QUORVANE_RANDOM_SEED=7 QUORVANE_RANDOM_CALLS=50000 wine random_calls_test.exe": "from a seed that a person chooses",
}
programs = r"(quorvane-sheet|script/\w+|regsvr32|cscript|start|cd|set|cmake|git|\w+\.cmd)\b"

# Code that is no command, by its document: what it shows, and how its lines begin.
quotations = {
    "README.md": ("what script/demo prints", r"\d+( |$)|A  +B "),
    "docs/architecture.md": ("a drawing", ""),
    "docs/getting_started.md": ("a line for Excel's editor of macros", r'Workbooks\.Open "'),
    "docs/package_definition.md": ("a package definition", r"#|\[|description, |name, |compound 1, |methane, |C7\+, "),
    "docs/help/pages/attach.md": ("a package's description", r"Stand-alone |[\w -]+: "),
    "docs/help/pages/runner.md": ("a cell", r'"='),
    "sheet/cli/README.md": ("a summary of options", r"quorvane-sheet .*(\[|\| )|\["),
}
formula = r"=CapeOpen\w+\(|CapeOpen\w+\([\w, \[\]]*\)$"


def documents():
    names = subprocess.run(["git", "-C", root, "ls-files", "-co", "--exclude-standard", "*.md"], check=True,
                           capture_output=True, text=True).stdout.split()
    return [root / name for name in names]


def prose_and_code(path):
    """(text outside code, lines of code blocks). The worked examples of the help are run by script/checks/help."""
    prose, code, fence = [], [], None
    for line in path.read_text(encoding="utf-8").splitlines():
        if line.lstrip().startswith("```"):
            fence = line.strip() if fence is None else None
        elif fence is not None or line.startswith("    "):
            if fence != "```example":
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


def is_quoted(name, line):
    return name in quotations and re.match(quotations[name][1], line)


def code_lines():
    """(document, line) for each line of code that is no formula and no quotation, without comments."""
    for path in documents():
        name = str(path.relative_to(root))
        for line in prose_and_code(path)[1]:
            line = re.sub(r"\s+#.*", "", line)
            if line and not is_quoted(name, line) and not re.match(formula, line):
                yield name, line


def is_command(line):
    return re.match(programs, line) or line in covered or line in by_a_person


def commands():
    """Each command once."""
    return list(dict.fromkeys(line for _, line in code_lines() if is_command(line)))


def is_covered(command):
    return command in covered or command in by_a_person


def uncovered():
    for name, line in code_lines():
        if not is_command(line):
            yield f"{name}: this is neither a command nor a formula nor a known quotation: {line}"
    seen = commands()
    for command in seen:
        if not is_covered(command) and not command.startswith("quorvane-sheet "):
            yield f"no check runs {command}"
    for command in [*covered, *by_a_person]:
        if command not in seen:
            yield f"no document has the command {command}"
    for command, (check, how) in covered.items():
        path = root / "script/checks" / check
        if not path.exists() or how not in path.read_text(encoding="utf-8"):
            yield f"script/checks/{check} does not run {command} any more: it lacks {how}"


def unattached():
    library = (root / "script/lib.sh").read_text(encoding="utf-8")
    manager = re.search(r"^manager=(\S+)$", library, re.M).group(1)
    listed = re.search(r"^example_packages=\((.*?)\)$", library, re.M | re.S).group(1).replace("$manager", manager)
    packages = dict(option.split("=", 1) for option in shlex.split(listed) if option != "--package")
    for path in sorted(root.glob("examples/*.csv")):
        with open(path, encoding="utf-8", newline="") as file:
            rows = list(csv.reader(file))
        cells = [cell for row in rows for cell in row]
        used = {name for name in packages if name in cells or any(f'("{name}"' in cell for cell in cells)}
        if not used:
            yield f"{path.name} uses no package"
        for name in used:
            if f"Attach {name}={packages[name]}." not in rows[1][0]:
                yield f"the second line of {path.name} does not say Attach {name}={packages[name]}."


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
    listings = {"links": broken_links, "uncovered": uncovered, "unattached": unattached}
    if what in listings:
        problems = list(listings[what]())
        print("\n".join(problems))
        sys.exit(bool(problems))
    elif what == "by_a_person":
        print("\n".join(f"{command} ({reason})" for command, reason in by_a_person.items()))
    elif what == "commands":
        for command in commands():
            if command.startswith("quorvane-sheet ") and not is_covered(command):
                print("\x1f".join(shlex.split(command.replace("\\", "\\\\"))[1:]))
    elif what == "sheet":
        write_sheet(arguments[0])
    else:
        sys.exit(__doc__)
