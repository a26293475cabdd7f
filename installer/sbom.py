#!/usr/bin/env python3
"""The software bill of materials, and the licence texts that go with it.

    sbom.py STAGE VERSION DATE MAP...     reads the linker's maps of the binaries in the folder STAGE; adds the folder
                                          licences/ and the file Quorvane.spdx.json (SPDX 2.3) to it

What is linked in is taken from the maps, not from a list: a library that pieces.tsv does not know is an error. Versions are
those of the Debian packages that the libraries lie in.
"""

import hashlib
import json
import re
import subprocess
import sys
from pathlib import Path
from urllib.parse import quote

here = Path(__file__).resolve().parent


class Piece:
    def __init__(self, line):
        self.name, files, self.licence, self.homepage, self.supplier, self.copyright_of = line.split("\t")
        self.files = files.split()
        self.found = {}  # Debian package -> names of the binaries that have code from it
        self.id = "SPDXRef-" + re.sub(r"[^A-Za-z0-9.-]", "-", self.name.replace("+", "p"))

    def copyright_text(self):
        return Path(f"/usr/share/doc/{self.copyright_of}/copyright").read_text(encoding="utf-8")


def pieces():
    lines = (here / "pieces.tsv").read_text(encoding="utf-8").splitlines()
    return [Piece(line) for line in lines if line and not line.startswith("#")]


def linked_files(map_file):
    """Libraries of which a member is part of the binary, and objects; without the project's own."""
    text = map_file.read_text(encoding="utf-8", errors="replace")
    members = text[:text.index("Memory Configuration")]
    names = re.findall(r"^(/\S+\.a)\(", members, re.M) + re.findall(r"^LOAD (/\S+\.o)$", text, re.M)
    if not names:
        raise ValueError(f"{map_file}: nothing is found in this map")
    return {Path(name).resolve().parent / Path(name).name for name in names}


def debian(*arguments):
    return subprocess.run(arguments, check=True, capture_output=True, text=True).stdout


def package_of(path):
    return debian("dpkg", "-S", str(path)).split(":")[0]


def version_of(package):
    return debian("dpkg-query", "-W", "-f=${Version}", package)


def find_pieces(known, maps):
    for map_file in maps:
        for path in sorted(linked_files(map_file)):
            piece = next((piece for piece in known if path.name in piece.files), None)
            if piece is None:
                raise ValueError(f"pieces.tsv does not know {path}, of which code is linked into {map_file.stem}")
            piece.found.setdefault(package_of(path), set()).add(map_file.stem)
    for piece in known:
        if piece.files[0].endswith(":"):
            piece.found[piece.files[0][:-1]] = {"setup"}
        if not piece.found:
            raise ValueError(f"pieces.tsv lists {piece.name}, of which nothing is linked any more")


def write_licences(known, folder):
    folder.mkdir()
    for piece in known:
        (folder / f"{piece.name}.txt").write_text(piece.copyright_text(), encoding="utf-8", newline="\r\n")


def digest(kind, content):
    return {"algorithm": kind, "checksumValue": hashlib.new(kind, content).hexdigest()}


def piece_package(piece):
    (debian_package,) = piece.found
    version = version_of(debian_package)
    return {
        "SPDXID": piece.id,
        "name": piece.name,
        "versionInfo": version,
        "supplier": f"Organization: {piece.supplier}",
        "downloadLocation": "NOASSERTION",
        "homepage": piece.homepage,
        "filesAnalyzed": False,
        "licenseConcluded": piece.licence,
        "licenseDeclared": piece.licence,
        "copyrightText": "NOASSERTION",
        "comment": f"From the Debian package {debian_package} {version}; part of {', '.join(sorted(next(iter(piece.found.values()))))}.",
        "externalRefs": [{
            "referenceCategory": "PACKAGE-MANAGER",
            "referenceType": "purl",
            "referenceLocator": f"pkg:deb/debian/{quote(debian_package, safe='')}@{quote(version, safe='')}",
        }],
    }


def bill(known, stage, version, date):
    content = {path.relative_to(stage).as_posix(): path.read_bytes() for path in sorted(stage.rglob("*")) if path.is_file()}
    files = [{
        "SPDXID": f"SPDXRef-File-{number}",
        "fileName": f"./{name}",
        "checksums": [digest("SHA1", data), digest("SHA256", data)],
        "licenseConcluded": "NOASSERTION",
        "licenseInfoInFiles": ["NOASSERTION"],
        "copyrightText": "NOASSERTION",
    } for number, (name, data) in enumerate(content.items(), 1)]
    sums = sorted(hashlib.sha1(data).hexdigest() for data in content.values())
    licence, copyright_line = [line for line in content["LICENSE.txt"].decode().splitlines() if line][:2]
    if licence != "MIT License":
        raise ValueError(f"the licence is no longer MIT but {licence}")
    product = {
        "SPDXID": "SPDXRef-Quorvane",
        "name": "Quorvane",
        "versionInfo": version,
        "supplier": "Organization: Tarnwick",
        "downloadLocation": "NOASSERTION",
        "filesAnalyzed": True,
        "packageVerificationCode": {"packageVerificationCodeValue": hashlib.sha1("".join(sums).encode()).hexdigest()},
        "licenseConcluded": "MIT",
        "licenseDeclared": "MIT",
        "licenseInfoFromFiles": ["NOASSERTION"],
        "copyrightText": copyright_line,
    }
    links = [{"spdxElementId": "SPDXRef-DOCUMENT", "relationshipType": "DESCRIBES", "relatedSpdxElement": product["SPDXID"]}]
    links += [{"spdxElementId": product["SPDXID"], "relationshipType": "CONTAINS", "relatedSpdxElement": file["SPDXID"]}
              for file in files]
    file_ids = {Path(file["fileName"]).stem: file["SPDXID"] for file in files if file["fileName"].endswith((".dll", ".exe"))}
    for piece in known:
        for binary in sorted(next(iter(piece.found.values()))):
            # Setup is made from all this, and so is no file of it.
            links.append({"spdxElementId": file_ids.get(binary, product["SPDXID"]),
                          "relationshipType": "STATIC_LINK" if binary in file_ids else "OTHER",
                          "relatedSpdxElement": piece.id} | ({} if binary in file_ids else {"comment": "in the setup program"}))
    return {
        "spdxVersion": "SPDX-2.3",
        "dataLicense": "CC0-1.0",
        "SPDXID": "SPDXRef-DOCUMENT",
        "name": f"Quorvane-{version}",
        "documentNamespace": f"https://tarnwick.example/quorvane/{version}/"
                             + hashlib.sha256("".join(sums).encode()).hexdigest()[:32],
        "creationInfo": {"created": date, "creators": ["Organization: Tarnwick", "Tool: installer/sbom.py"]},
        "packages": [product] + [piece_package(piece) for piece in known],
        "files": files,
        "relationships": links,
        "hasExtractedLicensingInfos": [
            {"licenseId": piece.licence, "name": f"Licences of {piece.name}", "extractedText": piece.copyright_text()}
            for piece in known if piece.licence.startswith("LicenseRef-")],
    }


def main(stage, version, date, *maps):
    known = pieces()
    find_pieces(known, [Path(name) for name in maps])
    for piece in known:
        if len(piece.found) != 1:
            raise ValueError(f"{piece.name} comes from several Debian packages: {', '.join(piece.found)}")
    stage = Path(stage)
    write_licences(known, stage / "licences")
    text = json.dumps(bill(known, stage, version, date), indent=2, ensure_ascii=False) + "\n"
    (stage / "Quorvane.spdx.json").write_text(text, encoding="utf-8")


if __name__ == "__main__":
    if len(sys.argv) < 5:
        sys.exit(__doc__)
    try:
        main(*sys.argv[1:])
    except ValueError as error:
        sys.exit(f"sbom.py: {error}")
