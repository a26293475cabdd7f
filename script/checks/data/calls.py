#!/usr/bin/env python3
"""Which calls the code makes to what others wrote: property packages, their managers and streams, Excel.

    calls.py                          the calls in src/ against the table of the fault matrix
    calls.py calls FILE...            prints the calls of these files
    calls.py compare TABLE FILE...    the calls of these files against another table

Prints what is wrong, and then exits with 1. A call is known by interface, method, file and function; properties of
Excel's objects, which are read by name, have the interface "property".
"""

import re
import sys
from pathlib import Path

sys.dont_write_bytecode = True
root = Path(__file__).resolve().parents[3]
own_table = root / "tests/faults/calls.tsv"

# Windows' interfaces as far as others implement them.
foreign = {
    "IPersistStream": "GetClassID IsDirty Load Save GetSizeMax",
    "IPersistStreamInit": "GetClassID IsDirty Load Save GetSizeMax InitNew",
    "IStream": "Read Write Seek SetSize CopyTo Commit Revert LockRegion UnlockRegion Stat Clone",
    "IDispatch": "GetTypeInfoCount GetTypeInfo GetIDsOfNames Invoke",
    "IErrorInfo": "GetGUID GetSource GetDescription GetHelpFile GetHelpContext",
}
# Objects that Windows itself makes.
windows_own = {
    "ITypeInfo": "GetFuncDesc GetNames ReleaseFuncDesc",
    "ICreateErrorInfo": "SetDescription SetGUID SetSource",
}
# Functions that read a property whose name they are given, and so never know it themselves.
readers = {"read", "readProperty", "readObject", "readCount", "readItem"}
# Other ways into foreign code, which the table would not see.
unseen = r"\b(VariantChangeType|VariantChangeTypeEx|DispInvoke|CoCreateInstanceEx|CoGetClassObject|CoGetObject|GetActiveObject|OleLoadFromStream|OleSaveToStream|lpVtbl)\b"

# Calls into the add-in's own objects. What Automation does with their arguments is the caller's affair.
own_objects = {"src/server/late_calls.cpp": "DispInvoke"}


def declared():
    """{interface: methods} of what others implement."""
    methods = {name: set(names.split()) for name, names in foreign.items()}
    for path, wanted in (
        ("src/capeopen/capeopen.idl", r"\w+"),
        ("src/foundation/office.idl", r"Excel\w+"),
        ("src/server/quorvane.idl", r"IQuorvaneVSTOContext"),
    ):
        text = (root / path).read_text(encoding="utf-8")
        for name, body in re.findall(rf"interface ({wanted}) : IDispatch\s*\{{(.*?)\}};", text, re.S):
            found = methods.setdefault(name, set())
            for attributes, method in re.findall(r"\[(id[^\]]*)\]\s*HRESULT (\w+)", body):
                kind = re.search(r"prop(get|put)", attributes)
                found.add(f"{kind.group(1)}_{method}" if kind else method)
    return methods


def without_comments(code):
    return re.sub(r"//[^\n]*", lambda comment: " " * len(comment.group()), code)


def function_at(code, position):
    """Functions begin in the first column."""
    name = "?"
    for line in code[:position].splitlines():
        found = re.match(r"(?![}#\s)]|static_assert|constexpr|template|using).*?(~?\w+)\(", line)
        if found:
            name = found.group(1)
    return name


def type_before(sources, position, variable):
    """The interface that a pointer of this name was last declared with: in the file above, else in its headers."""
    declaration = re.compile(
        rf"com_ptr<(\w+)>&? {variable}\b|\b(\w+)\*+&? {variable}\b"
        rf"|\bauto\*?&? {variable} =[^;]*?(?:queryFor|tryAs|require)<(\w+)>"
    )
    for number, source in enumerate(sources):
        found = [*declaration.finditer(source[:position] if number == 0 else source)]
        if found:
            return next(name for name in found[-1].groups() if name)
    return None


def arguments_at(code, start):
    """The text up to the parenthesis that closes the one before `start`."""
    depth = 1
    for end in range(start, len(code)):
        depth += {"(": 1, ")": -1}.get(code[end], 0)
        if depth == 0:
            return code[start:end]
    return code[start:]


def calls_of(name, code, headers, methods, problems):
    """Yields (interface, method, function) and notes what cannot be told."""
    sources = [code, *headers]
    own = set(" ".join(windows_own.values()).split())
    known = set().union(*methods.values())
    for found in re.finditer(r"(\w+)(?:\.get\(\))?->((?:get_|put_)\w+|[A-Z]\w*)\(", code):
        variable, method = found.groups()
        interface = type_before(sources, found.start(), variable)
        if interface in windows_own and method in own:
            continue
        if method not in known or interface not in methods or method not in methods[interface]:
            problems.append(f"{name}: whose method is {variable}->{method}?")
            continue
        yield interface, method, function_at(code, found.start())
    for found in re.finditer(r"&(\w+)::((?:get_|put_)?\w+)", code):
        interface, method = found.groups()
        if method in methods.get(interface, ()):
            yield interface, method, function_at(code, found.start())
    for found in re.finditer(r"\b(?:queryFor|tryAs|require)<(\w+)>", code):
        interface, function = found.group(1), function_at(code, found.start())
        if interface == "Interface" or re.search(r"\bcreator\.$", code[: found.start()]):
            continue
        if interface not in methods and interface != "IUnknown":
            problems.append(f"{name}: what is {interface}?")
        yield interface, "QueryInterface", function
    for found in re.finditer(r"->QueryInterface\(", code):
        problems.append(f"{name}: interfaces are asked for with queryFor or tryAs")
    for found in re.finditer(r"\bCoCreateInstance\(", code):
        asked = re.search(r"__uuidof\((\w+)\)|\bIID_(\w+)", arguments_at(code, found.end()))
        interface = asked and (asked.group(1) or asked.group(2))
        if interface != "Interface":
            yield interface, "CoCreateInstance", function_at(code, found.start())
    for found in re.finditer(r"\bcreated<(\w+)>\(", code):
        yield found.group(1), "CoCreateInstance", function_at(code, found.start())
    for found in re.finditer(rf"\b({'|'.join(readers)})\(", code):
        function = function_at(code, found.start())
        named = re.search(r'L"(\w+)"', arguments_at(code, found.end()))
        if found.group(1) == "readItem":
            continue  # its text is the index
        if named:
            yield "property", named.group(1), function
        elif function not in readers and code[code.rfind("\n", 0, found.start()) + 1] == " ":
            problems.append(f"{name}: {function} reads a property that has no name here")
    # An object that is turned into a number or text is asked for its value, unless the flags say no.
    asking = set()
    for found in re.finditer(r"\bcom::convert\(", code):
        arguments = [part.strip() for part in arguments_at(code, found.end()).split(",")]
        if arguments[2:3] == ["0"]:
            asking.add(function_at(code, found.start()))
        elif arguments[2:] and arguments[2] != "VARIANT_NOVALUEPROP":
            problems.append(f"{name}: does com::convert with {arguments[2]} ask objects for their value?")
    for function in sorted(asking):
        yield "IDispatch", "Invoke", function
    for found in re.finditer(r"\)->((?:get_|put_)?[A-Z]\w*)\(", code):
        if not re.search(r"\w\.get\($", code[: found.start()]):
            problems.append(f"{name}: whose method is )->{found.group(1)}?")
    for found in re.finditer(unseen, code):
        if own_objects.get(name) == found.group():
            continue
        problems.append(f"{name}: {found.group()} is a call that the table does not see")


def found_calls(files, problems):
    methods = declared()
    if len(methods) < 40:
        problems.append("the interface descriptions are not read any more")
    calls = []
    for path in files:
        code = without_comments(path.read_text(encoding="utf-8"))
        included = [root / header for header in re.findall(r'#include "([^"]+)"', path.read_text(encoding="utf-8"))]
        headers = [without_comments(header.read_text(encoding="utf-8")) for header in included if header.exists()]
        is_ours = path.is_relative_to(root / "src")
        name = str(path.relative_to(root)) if is_ours else path.name
        for interface, method, function in calls_of(name, code, headers, methods, problems):
            calls.append((interface, method, f"{name} {function}"))
    for call in sorted({call for call in calls if calls.count(call) > 1}, key=str):
        problems.append(f"twice in one function, where the table cannot tell them apart: {' '.join(map(str, call))}")
    return set(calls)


def table_calls(path):
    rows = [line.split("\t") for line in path.read_text(encoding="utf-8").splitlines() if line and line[0] != "#"]
    return {tuple(row[1:4]) for row in rows}


def compare(table, files, problems):
    calls = found_calls(files, problems)
    listed = table_calls(table)
    problems.extend(f"not in the table: {' '.join(map(str, call))}" for call in sorted(calls - listed, key=str))
    problems.extend(f"no such call in the code: {' '.join(call)}" for call in sorted(listed - calls))


def main(arguments):
    problems = []
    if arguments[:1] == ["calls"]:
        for call in sorted(found_calls([Path(file) for file in arguments[1:]], problems), key=str):
            print(" ".join(map(str, call)))
    elif arguments[:1] == ["compare"]:
        compare(Path(arguments[1]), [Path(file) for file in arguments[2:]], problems)
    elif not arguments:
        compare(own_table, sorted([*root.glob("src/**/*.cpp"), *root.glob("src/**/*.h")]), problems)
    else:
        sys.exit(__doc__)
    print(*problems, sep="\n", end="\n" if problems else "")
    sys.exit(1 if problems else 0)


main(sys.argv[1:])
