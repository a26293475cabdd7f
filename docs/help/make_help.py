#!/usr/bin/env python3
"""Makes the HTML pages, contents and index of the help file from the Markdown pages beside this script.

    make_help.py OUTPUT_FOLDER        everything that the help compiler needs, with quorvane.hhp as its project
    make_help.py --examples           the worked examples as "page<TAB>formula<TAB>expected rows", for the checks

What the pages may use besides Markdown:

    Keywords: a; b                    on the line after the title: entries of the index
    ```example                        a formula, then the cells that it fills: "|" between columns, "..." for more
    {{messages NAME}}                 the messages of a worksheet function or group, from messages.tsv
    {{properties KIND}}               a table of the property catalogue
    {{version}}                       the product's version
    {{packages}}                      the built-in packages of the Peng-Robinson manager
    {{document NAME}}                 docs/NAME.md, or NAME.md beside README.md, without its title and its pictures; what it
                                      links to beside the help stays as text
"""

import csv
import html
import re
import sys
from pathlib import Path

import markdown

here = Path(__file__).resolve().parent
source = here.parent.parent
functions = [
    "PackageNames", "UnitOfMeasure", "Compounds", "Phases", "CompoundConstant", "TemperatureDependentProperty",
    "MixtureProperty", "TwoPhaseProperty", "PhaseEquilibrium",
]
groups = {"all": functions, "package": functions[2:], "calculation": functions[6:], "frontend": [], "material": []}


def messages():
    """Rows (message, names of functions and groups, remedy)."""
    rows = []
    for line in (here / "messages.tsv").read_text(encoding="utf-8").splitlines():
        if line and not line.startswith("#"):
            message, who, remedy = line.split("\t")
            names = who.split()
            unknown = [name for name in names if name not in functions and name not in groups]
            if unknown:
                raise ValueError(f"messages.tsv: nobody is called {unknown[0]}: {message}")
            rows.append((message, names, remedy))
    return rows


def shows(names, who):
    """True when messages of `names` can be shown by the function or group `who`."""
    return who == "everything" or any(name == who or who in groups.get(name, []) for name in names)


def message_table(who):
    rows = sorted((row for row in messages() if shows(row[1], who)), key=lambda row: row[0].strip('<"').lower())
    if not rows:
        raise ValueError(f"no messages of {who}")
    cells = ""
    for message, _, remedy in rows:
        shown = re.sub("&lt;(.*?)&gt;", r"<i>\1</i>", html.escape(message, quote=False))
        cells += f"<tr><td>{shown}</td><td>{html.escape(remedy, quote=False)}</td></tr>\n"
    return f'<table class="messages"><tr><th>message</th><th>what to do</th></tr>\n{cells}</table>'


def catalogue_rows(kind):
    """(name, second name, unit on mole basis, values per compound) of a table in the catalogue's source."""
    text = (source / "src/catalogue/property_tables.h").read_text(encoding="utf-8")
    body = re.search(r"\b%s\[\] = \{\n(.*?)\n\};" % kind, text, re.S).group(1)
    if kind == "textConstants":
        return [(name, None, None, None) for name in re.findall(r'L"([^"]*)"', body)]
    rows = []
    for row in re.findall(r"\{(L\".*?)\}", body):
        fields = [field.strip() for field in row.split(",")]
        texts = [None if field == "nullptr" else field[2:-1] if field.startswith('L"') else field for field in fields]
        aliased = kind in ("singlePhase", "twoPhase")
        unit = texts[2] if aliased else texts[1]
        rank = {"singlePhase": 4, "twoPhase": 3}.get(kind)
        rows.append((texts[0], texts[1] if aliased else None, unit, texts[rank] if rank else None))
    return rows


def mass_unit(unit, kind):
    return unit if unit is None or kind == "twoPhase" else unit.replace("mol", "kg")


def property_table(kind):
    shapes = {"0": "one value", "1": "one for each compound", "2": "one for each pair of compounds", None: ""}
    with_shape = kind in ("singlePhase", "twoPhase")
    lines = []
    for name, alias, unit, rank in sorted(catalogue_rows(kind), key=lambda row: row[0].lower()):
        shown = f"<code>{html.escape(name)}</code>" + (f" or <code>{alias}</code>" if alias else "")
        cells = [shown]
        if kind != "textConstants":
            cells += [unit or "&ndash;", mass_unit(unit, kind) or "&ndash;"]
        if with_shape:
            cells.append(shapes[rank])
        lines.append("<tr>" + "".join(f"<td>{cell}</td>" for cell in cells) + "</tr>\n")
    heads = ["name"] + ([] if kind == "textConstants" else ["mole basis", "mass basis"])
    heads += ["values"] if with_shape else []
    return "<table><tr>" + "".join(f"<th>{head}</th>" for head in heads) + "</tr>\n" + "".join(lines) + "</table>"


def version():
    return re.search(r"^project\(Quorvane VERSION ([0-9.]+)", (source / "CMakeLists.txt").read_text(), re.M).group(1)


def built_in_packages():
    text = (source / "packages/peng_robinson/catalogue/named_packages.cpp").read_text(encoding="utf-8")
    rows = re.findall(r'NamedPackage\{"([^"]+)",\s*"([^"]+)"', text)
    if not rows:
        raise ValueError("named_packages.cpp: no packages are found")
    cells = "".join(f"<tr><td><code>{name}</code></td><td>{about}</td></tr>\n" for name, about in rows)
    return f"<table><tr><th>package</th><th></th></tr>\n{cells}</table>"


def example_block(match):
    formula, *rows = match.group(1).strip("\n").split("\n")
    cells = "".join(
        "<tr>" + "".join(f"<td>{html.escape(cell.strip())}</td>" for cell in row.split("|")) + "</tr>\n" for row in rows)
    return f'\n<p class="formula"><code>{html.escape(formula)}</code></p>\n<table class="result">{cells}</table>\n'


def document(name):
    path = here.parent / f"{name}.md"
    text = (path if path.exists() else source / f"{name}.md").read_text(encoding="utf-8")
    text = re.sub(r"\A# .*\n", "", text)
    text = re.sub(r"^!\[[^\]\n]*\]\([^)]*\)\n\n?", "", text, flags=re.M)
    return re.sub(r"\[([^\]\n]+)\]\((?!https?:|#)[^)]*\)", r"`\1`", text)


example = re.compile(r"^```example\n(.*?)^```$", re.M | re.S)


class Page:
    def __init__(self, name):
        self.name = name
        text = (here / "pages" / f"{name}.md").read_text(encoding="utf-8")
        self.title = re.match(r"# (.*)\n", text).group(1)
        keywords = re.search(r"^Keywords: (.*)\n", text, re.M)
        self.keywords = [word.strip() for word in keywords.group(1).split(";")] if keywords else []
        text = re.sub(r"^Keywords: .*\n", "", text, flags=re.M)
        text = re.sub(r"\{\{document (\w+)\}\}", lambda m: document(m.group(1)), text)
        self.examples = [found.strip("\n").split("\n") for found in example.findall(text)]
        text = example.sub(example_block, text)
        text = re.sub(r"\{\{messages (\w+)\}\}", lambda m: message_table(m.group(1)), text)
        text = text.replace("{{packages}}", built_in_packages()).replace("{{version}}", version())
        text = re.sub(r"\{\{properties (\w+)\}\}", lambda m: property_table(m.group(1)), text)
        self.body = markdown.markdown(text, extensions=["tables", "toc", "fenced_code"])

    def write(self, folder):
        (folder / f"{self.name}.html").write_text(
            '<!DOCTYPE html>\n<html lang="en"><head><meta http-equiv="Content-Type" content="text/html; charset=utf-8">'
            f'<title>{html.escape(self.title)}</title><link rel="stylesheet" href="help.css"></head>\n'
            f"<body>\n{self.body}\n</body></html>\n", encoding="utf-8")


def contents():
    """Lines of contents.txt: (depth, page name) or (depth, heading)."""
    for line in (here / "contents.txt").read_text(encoding="utf-8").splitlines():
        text = line.strip()
        if text:
            yield (len(line) - len(line.lstrip())) // 4, text


def site_map(entries):
    """`entries`: (depth, title, file or None). The format of both contents and index."""
    lines = ["<!DOCTYPE HTML PUBLIC \"-//IETF//DTD HTML//EN\">", "<html><body>"]
    depth = -1
    for level, title, file in entries:
        while depth < level:
            lines.append("<ul>")
            depth += 1
        while depth > level:
            lines.append("</ul>")
            depth -= 1
        local = f'<param name="Local" value="{file}">' if file else ""
        lines.append('<li><object type="text/sitemap">'
                     f'<param name="Name" value="{html.escape(title)}">{local}</object></li>')
    lines += ["</ul>"] * (depth + 1) + ["</body></html>"]
    return "\n".join(lines) + "\n"


project = """[OPTIONS]
Compatibility=1.1 or later
Compiled file=Quorvane.chm
Contents file=quorvane.hhc
Index file=quorvane.hhk
Default topic=index.html
Default Window=main
Full-text search=Yes
Language=0x409 English (United States)
Title=Quorvane

[WINDOWS]
main="Quorvane","quorvane.hhc","quorvane.hhk","index.html","index.html",,,,,0x63520,220,0x384e,[80,60,1000,700],,,,,,,0

[FILES]
"""


def build(folder):
    folder.mkdir(parents=True, exist_ok=True)
    entries = list(contents())
    pages = {text: Page(text) for _, text in entries if (here / "pages" / f"{text}.md").exists()}
    unlisted = {path.stem for path in (here / "pages").glob("*.md")} - pages.keys()
    if unlisted:
        raise ValueError(f"contents.txt does not list {', '.join(sorted(unlisted))}")
    for page in pages.values():
        page.write(folder)
    (folder / "help.css").write_text((here / "help.css").read_text(encoding="utf-8"), encoding="utf-8")
    (folder / "quorvane.hhc").write_text(site_map(
        (depth, pages[text].title, f"{text}.html") if text in pages else (depth, text, None)
        for depth, text in entries), encoding="utf-8")
    index = sorted(((word, page) for page in pages.values() for word in page.keywords),
                   key=lambda entry: (entry[0].lower(), entry[1].title))
    (folder / "quorvane.hhk").write_text(
        site_map((0, word, f"{page.name}.html") for word, page in index), encoding="utf-8")
    files = "".join(f"{name}.html\n" for name in pages) + "help.css\n"
    (folder / "quorvane.hhp").write_text(project + files, encoding="utf-8")


def write_examples():
    rows = csv.writer(sys.stdout, dialect="excel-tab", lineterminator="\n")
    for path in sorted((here / "pages").glob("*.md")):
        for formula, *expected in Page(path.stem).examples:
            rows.writerow([path.stem, formula, *expected])


if __name__ == "__main__":
    if sys.argv[1:] == ["--examples"]:
        write_examples()
    elif len(sys.argv) == 2:
        build(Path(sys.argv[1]))
    else:
        sys.exit(__doc__)
