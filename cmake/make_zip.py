"""Packs a folder into a ZIP that depends on nothing but names and contents: entries in order, one time for all.

usage: make_zip.py FOLDER ZIP SECONDS   (SECONDS since 1970: the time that all entries carry)
"""

import datetime
import pathlib
import sys
import zipfile

folder, archive, seconds = pathlib.Path(sys.argv[1]), sys.argv[2], int(sys.argv[3])
time = datetime.datetime.fromtimestamp(seconds, datetime.timezone.utc).timetuple()[:6]

with zipfile.ZipFile(archive, "w", zipfile.ZIP_DEFLATED, compresslevel=9) as package:
    files = (path for path in folder.rglob("*") if path.is_file())
    for path in sorted(files, key=lambda path: path.relative_to(folder).as_posix()):
        entry = zipfile.ZipInfo(f"{folder.name}/{path.relative_to(folder).as_posix()}", time)
        entry.compress_type = zipfile.ZIP_DEFLATED
        entry.create_system = 3  # the same from whatever system it is made on
        entry.external_attr = 0o100644 << 16
        package.writestr(entry, path.read_bytes())
