#!/usr/bin/env python3
"""Parts of script/checks/help that are awkward in a shell. Each prints what is wrong, and then exits with 1.

    help.py messages                  the table of messages against the texts in the code
    help.py pages FOLDER              the pages of the help file: links, contents, index, the functions' arguments
    help.py sheet FILE.csv            writes natural_gas.csv with every example of the pages beside it
    help.py answers RESULT.csv        that sheet, calculated, against what the pages promise
"""

import csv
import re
import sys
from html.parser import HTMLParser
from pathlib import Path

sys.dont_write_bytecode = True
root = Path(__file__).resolve().parents[3]
sys.path.insert(0, str(root / "docs/help"))
import make_help  # noqa: E402

problems = []

# --- Messages ----------------------------------------------------------------------------------------------------

# Texts with blanks that are no messages, or are only parts of one.
no_messages = {
    "triplePointTemperature ": "a property",
    "double precision": "a word in a message",
    "<Unknown manager>": "stands in a message for a name",
    "phase 1": "a word that users may type",
    "phase 2": "a word that users may type",
    "For more info, please see https://tarnwick.example/quorvane": "material objects tell it to packages on request",
    "Length mismatch between list of phase names and states of aggregation": "shown as Unknown exception",
    "Invalid values from Property Package: ": "of lists that every function checks, in other words, before it turns them",
    "NULL IDispatch passed to AutoWrap()": "caught wherever an object of Excel can be missing",
}
# Files whose texts with blanks are no failures.
no_messages_in = {"src/package/package_description.cpp": "labels of a description"}


def literals():
    """(file, text) of every wide literal, neighbours joined, and the text of every exception of its own."""
    text_pattern = r'L"((?:[^"\\]|\\.)*)"'
    for path in sorted([*root.glob("src/**/*.cpp"), *root.glob("src/**/*.h"), *root.glob("com/*.h")]):
        code = re.sub(r"^\s*//.*$|(?<=[;{}),]) *//.*$", "", path.read_text(encoding="utf-8"), flags=re.M)
        name = str(path.relative_to(root))
        for run in re.finditer(rf"\bL\"(?:[^\"\\]|\\.)*\"(?:\s*{text_pattern})*", code):
            yield name, "".join(re.findall(text_pattern, run.group(0)))
        for narrow in re.findall(r'\bwhat\(\) const noexcept override {\s*return "([^"]*)"', code):
            yield name, narrow


def unescaped(text):
    return text.replace('\\"', '"').replace("\\\\", "\\").replace("%1!08X!", "")


def is_made_of(text, parts):
    reachable = {0}
    for start in range(len(text)):
        if start in reachable:
            reachable.update(start + len(part) for part in parts if part and text.startswith(part, start))
    return len(text) in reachable


def check_messages():
    table = [message for message, _, _ in make_help.messages()]
    problems.extend(f"twice in messages.tsv: {message}" for message in set(table) if table.count(message) > 1)
    for message, _, remedy in make_help.messages():
        if not remedy.endswith("."):
            problems.append(f"the remedy is no sentence: {message}")
    found = [(file, unescaped(text)) for file, text in literals()]
    if len(found) < 300:
        problems.append("the code is not read any more")
    for file, text in found:
        is_message = " " in text.strip() and text not in no_messages and file not in no_messages_in
        if is_message and not any(text.strip('"') in message for message in table):
            problems.append(f"messages.tsv lacks a text of {file}: {text}")
    parts = {text for _, text in found}
    for message in table:
        # "<unknown error>" stands in the code as it is.
        fixed = [message] if message in parts else re.split(r"<[a-z ]+>", message)
        if not all(is_made_of(part, parts) for part in fixed):
            problems.append(f"nothing in the code says: {message}")
    for text in no_messages:
        if text not in parts:
            problems.append(f"no longer in the code, but excepted in {Path(__file__).name}: {text}")


# --- Pages -------------------------------------------------------------------------------------------------------

class Html(HTMLParser):
    """Anchors and references of a page, and the entries of a site map."""

    def __init__(self, path):
        super().__init__()
        self.anchors, self.references, self.names = set(), [], []
        self.feed(path.read_text(encoding="utf-8"))

    def handle_starttag(self, tag, attrs):
        values = dict(attrs)
        if "id" in values:
            self.anchors.add(values["id"])
        if tag in ("a", "link") and "href" in values:
            self.references.append(values["href"])
        if tag == "param" and values.get("name") == "Local":
            self.references.append(values["value"])
        if tag == "param" and values.get("name") == "Name":
            self.names.append(values["value"])


def described_functions():
    """Name to parameters of each worksheet function, from the interface description; optional ones in brackets."""
    idl = (root / "src/server/quorvane.idl").read_text(encoding="utf-8")
    body = idl[idl.index("interface IQuorvaneUDF"):idl.index("interface IQuorvaneVSTOServices")]
    for name, parameters in re.findall(r"HRESULT (CapeOpen\w+)\((.*?)\);", body, re.S):
        given = re.findall(r"\[(in[^\]]*)\] \w+ (\w+)", parameters)
        yield name, [f"[{word}]" if "optional" in attributes else word for attributes, word in given]


def page_name(function):
    return re.sub(r"(?<!^)([A-Z])", r"-\1", function.removeprefix("CapeOpen")).lower()


def check_pages(folder):
    pages = {path.name: Html(path) for path in [*folder.glob("*.html"), *folder.glob("quorvane.hh[ck]")]}
    for name, page in pages.items():
        for reference in page.references:
            file, _, anchor = reference.partition("#")
            target = file or name
            if not (folder / target).is_file():
                problems.append(f"{name} refers to {reference}, which is not there")
            elif anchor and anchor not in pages[target].anchors:
                problems.append(f"{name} refers to {reference}: there is no such place on the page")
        if "{{" in (folder / name).read_text(encoding="utf-8"):
            problems.append(f"{name} is not filled in")
    topics = {name for name in pages if name.endswith(".html")}
    for map_name in ("quorvane.hhc", "quorvane.hhk"):
        missing = topics - set(pages[map_name].references)
        problems.extend(f"{map_name} does not lead to {name}" for name in sorted(missing))
    functions = dict(described_functions())
    if len(functions) != len(make_help.functions):
        problems.append("the interface description has other functions than the help")
    for function, parameters in functions.items():
        source = (root / f"docs/help/pages/{page_name(function)}.md").read_text(encoding="utf-8")
        if f"    {function}({', '.join(parameters)})\n" not in source:
            problems.append(f"{function} is described with other arguments than {', '.join(parameters)}")
        table = " ".join(re.findall(r"^\| (.*?) \|", source, re.M))
        problems.extend(f"{function} does not tell what {word.strip('[]')} is"
                        for word in parameters if not re.search(rf"\b{word.strip('[]')}\b", table))
        if f"{{{{messages {function.removeprefix('CapeOpen')}}}}}" not in source or "```example" not in source:
            problems.append(f"the page of {function} lacks its messages or an example")
        if function not in pages["quorvane.hhk"].names:
            problems.append(f"the index lacks {function}")


# --- Examples ----------------------------------------------------------------------------------------------------

example_sheet = root / "examples/natural_gas.csv"
first_column, block_width, block_height = 30, 40, 40


def examples():
    """(page, formula, expected rows) of every example; each has a block of cells of its own."""
    for path in sorted((root / "docs/help/pages").glob("*.md")):
        for formula, *expected in make_help.Page(path.stem).examples:
            yield path.stem, formula, [[cell.strip() for cell in row.split("|")] for row in expected]


def write_sheet(target):
    rows = list(csv.reader(example_sheet.open(encoding="utf-8", newline="")))
    for number, (_, formula, _) in enumerate(examples()):
        column = first_column + number * block_width
        rows[0].extend([""] * (column + 1 - len(rows[0])))
        rows[0][column] = formula
    with target.open("w", encoding="utf-8", newline="") as file:
        csv.writer(file).writerows(rows)


def calculated(result):
    """The filled cells of each example's block."""
    rows = list(csv.reader(result.open(encoding="utf-8", newline="")))
    for number, example in enumerate(examples()):
        left = first_column + number * block_width
        block = [row[left:left + block_width] for row in rows[:block_height]]
        width = max((i + 1 for row in block for i, cell in enumerate(row) if cell), default=0)
        height = max((i + 1 for i, row in enumerate(block) if any(row)), default=0)
        yield example, [(row + [""] * width)[:width] for row in block[:height]]


def same_cell(promised, found):
    try:
        return abs(float(promised.replace(",", "")) - float(found)) <= 2e-6 * abs(float(found))
    except ValueError:
        return promised == found


def same_row(promised, found):
    if promised[-1] == "...":
        return len(found) >= len(promised) and all(map(same_cell, promised[:-1], found))
    return len(promised) == len(found) and all(map(same_cell, promised, found))


def check_answers(result):
    count = 0
    for (page, formula, promised), found in calculated(result):
        count += 1
        more = promised[-1] == ["..."]
        kept = promised[:-1] if more else promised
        if not kept or (len(found) <= len(kept) if more else len(found) != len(kept)) or not all(
                map(same_row, kept, found)):
            problems.append(f"{page}: {formula}\n  promised {promised}\n  found    {found[:6]}")
    if count < 15:
        problems.append("the pages have hardly any examples")


if __name__ == "__main__":
    command, *arguments = sys.argv[1:] or [""]
    if command == "messages":
        check_messages()
    elif command == "pages":
        check_pages(Path(arguments[0]))
    elif command == "sheet":
        write_sheet(Path(arguments[0]))
    elif command == "answers":
        check_answers(Path(arguments[0]))
    else:
        sys.exit(__doc__)
    print("\n".join(problems))
    sys.exit(bool(problems))
