"""Installs what is built and packs it into a ZIP that depends on nothing but names and contents: entries in order, one time
for all, that of the last commit.

usage: make_package.py CMAKE SOURCE_FOLDER BUILD_FOLDER CONFIGURATION ZIP
"""

import datetime
import os
import pathlib
import subprocess
import sys
import tempfile
import zipfile

EARLIEST = 315532800  # the first moment that a ZIP can express, for sources without a history

cmake, source, build, configuration, archive = sys.argv[1:]
archive = pathlib.Path(archive)
commit = subprocess.run(["git", "log", "-1", "--format=%ct"], cwd=source, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
seconds = int(os.environ.get("SOURCE_DATE_EPOCH") or commit.stdout or EARLIEST)
time = datetime.datetime.fromtimestamp(seconds, datetime.timezone.utc).timetuple()[:6]

with tempfile.TemporaryDirectory() as staging, \
        zipfile.ZipFile(archive, "w", zipfile.ZIP_DEFLATED, compresslevel=9) as package:
    root = pathlib.Path(staging, archive.stem)
    subprocess.run([cmake, "--install", build, "--config", configuration, "--prefix", root], check=True,
                   stdout=subprocess.DEVNULL)
    names = sorted(path.relative_to(staging).as_posix() for path in root.rglob("*") if path.is_file())
    for name in names:
        entry = zipfile.ZipInfo(name, time)
        entry.compress_type = zipfile.ZIP_DEFLATED
        entry.create_system = 3  # the same from whatever system it is made on
        entry.external_attr = 0o100644 << 16
        package.writestr(entry, pathlib.Path(staging, name).read_bytes())
print(f"{archive}: {archive.stat().st_size / 1e6:.1f} MB")
