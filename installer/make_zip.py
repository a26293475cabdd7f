#!/usr/bin/env python3
"""make_zip.py FOLDER OUTPUT.zip DATE: packs the folder, in the order of the names and all with one date, so that the same
files give the same archive."""

import datetime
import sys
import zipfile
from pathlib import Path

folder, output, date = Path(sys.argv[1]), sys.argv[2], datetime.datetime.fromisoformat(sys.argv[3].replace("Z", "+00:00"))
with zipfile.ZipFile(output, "w", zipfile.ZIP_DEFLATED, compresslevel=9) as archive:
    for path in sorted(folder.rglob("*")):
        if path.is_file():
            entry = zipfile.ZipInfo(path.relative_to(folder.parent).as_posix(), date.timetuple()[:6])
            entry.compress_type = zipfile.ZIP_DEFLATED
            archive.writestr(entry, path.read_bytes())
