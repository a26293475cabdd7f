#!/usr/bin/env python3
"""Parts of script/checks/release that are awkward in a shell. Each prints what is wrong, and then exits with 1.

    packed.py bill FOLDER             the bill of materials in the folder against the files, and against what is linked in
    packed.py versions FILE...        prints the strings of each binary's version resource, one a line
"""

import hashlib
import json
import re
import struct
import subprocess
import sys
from pathlib import Path

root = Path(__file__).resolve().parents[3]

# --- Bill of materials ---------------------------------------------------------------------------------------------

# What any static build by this compiler has in it, by the Debian package that it comes from.
pieces = {
    "zlib": "libz-mingw-w64-dev",
    "libstdc++": "g++-mingw-w64-x86-64-posix",
    "libgcc": "gcc-mingw-w64-x86-64-posix",
    "winpthreads": "mingw-w64-x86-64-dev",
    "mingw-w64-runtime": "mingw-w64-x86-64-dev",
    "NSIS": "nsis-common",
}
# Not there when the bill is made, or only in the archive.
not_listed = {"Quorvane.spdx.json", "register.cmd", "unregister.cmd"}


def problems_of_bill(folder):
    bill = json.loads((folder / "Quorvane.spdx.json").read_text(encoding="utf-8"))
    packages = {package["name"]: package for package in bill["packages"]}
    if packages.keys() != pieces.keys() | {"Quorvane"}:
        yield f"the packages are {', '.join(packages)}"
    for name, debian in pieces.items():
        version = subprocess.run(["dpkg-query", "-W", "-f=${Version}", debian], check=True, capture_output=True, text=True).stdout
        if packages[name]["versionInfo"] != version:
            yield f"{name} has version {packages[name]['versionInfo']} instead of {version}"
        if packages[name]["licenseConcluded"] in ("NOASSERTION", "NONE"):
            yield f"{name} has no licence"
        if not (folder / "licences" / f"{name}.txt").read_text(encoding="utf-8").strip():
            yield f"licences/{name}.txt is empty"
    listed = {file["fileName"].removeprefix("./"): file["checksums"] for file in bill["files"]}
    there = {path.relative_to(folder).as_posix() for path in folder.rglob("*") if path.is_file()}
    if listed.keys() != there - not_listed:
        yield f"files are listed that are not there, or the other way round: {listed.keys() ^ (there - not_listed)}"
    for name, sums in listed.items():
        for checksum in sums:
            if hashlib.new(checksum["algorithm"], (folder / name).read_bytes()).hexdigest() != checksum["checksumValue"]:
                yield f"{name} has another {checksum['algorithm']}"
    known = {"SPDXRef-DOCUMENT"} | {item["SPDXID"] for kind in ("packages", "files") for item in bill[kind]}
    linked = {name: set() for name in ("Quorvane.dll", "PengRobinson.dll", "quorvane-sheet.exe")}
    names = {item["SPDXID"]: item.get("fileName", "./")[2:] or item["name"] for kind in ("packages", "files") for item in bill[kind]}
    for relation in bill["relationships"]:
        if not {relation["spdxElementId"], relation["relatedSpdxElement"]} <= known:
            yield f"a relation of something unknown: {relation}"
        elif relation["relationshipType"] == "STATIC_LINK":
            linked[names[relation["spdxElementId"]]].add(names[relation["relatedSpdxElement"]])
    every = {"libstdc++", "libgcc", "winpthreads", "mingw-w64-runtime"}
    wanted = {"Quorvane.dll": every | {"zlib"}, "PengRobinson.dll": every, "quorvane-sheet.exe": every}
    if linked != wanted:
        yield f"linked in are {linked}"
    used = set(re.findall(r"LicenseRef-[\w.-]+", json.dumps(bill["packages"])))
    told = {licence["licenseId"] for licence in bill["hasExtractedLicensingInfos"]}
    if used != told:
        yield f"licences without a text, or texts without use: {used ^ told}"


# --- Version resources ---------------------------------------------------------------------------------------------

def version_block(data):
    """The resource's bytes: it begins with its length, and its name is always this."""
    start = data.index("VS_VERSION_INFO\0".encode("utf-16-le")) - 6
    return data[start:start + struct.unpack_from("<H", data, start)[0]]


def strings(block):
    """(name, value) of every string: length, length of the value in characters, 1 for text, name, value."""
    found = {}
    for offset in range(0, len(block) - 6, 4):
        length, count, kind = struct.unpack_from("<HHH", block, offset)
        if kind == 1 and 0 < count <= length // 2 and offset + length <= len(block):
            name, _, rest = block[offset + 6:offset + length].decode("utf-16-le", "replace").partition("\0")
            if re.fullmatch(r"[A-Z][A-Za-z]+", name) and name != "StringFileInfo":
                found[name] = rest.strip("\0")
    return found


if __name__ == "__main__":
    command, *files = sys.argv[1:]
    if command == "bill":
        problems = list(problems_of_bill(Path(files[0])))
        print("\n".join(problems))
        sys.exit(bool(problems))
    for file in files:
        values = strings(version_block(Path(file).read_bytes()))
        for name in ("ProductName", "FileDescription", "FileVersion", "ProductVersion", "LegalCopyright", "CompanyName"):
            print(f"{Path(file).name}: {name}: {values.get(name)}")
