"""Makes the reference, which fails where something public is not described, and looks for what Doxygen overlooks: values
of enumerations.

usage: check_reference.py CMAKE BUILD_FOLDER
"""

import pathlib
import shutil
import subprocess
import sys
import xml.etree.ElementTree as tree


def main(cmake, build):
    pages = pathlib.Path(build) / "reference-xml"
    shutil.rmtree(pages, ignore_errors=True)
    made = subprocess.run([cmake, "--build", build, "--target", "reference"], stdout=subprocess.PIPE, encoding="utf-8",
                          check=False)
    if made.returncode != 0:
        print(made.stdout)
        return 1
    described = 0
    missing = []
    for page in pages.glob("*.xml"):
        for value in tree.parse(page).iter("enumvalue"):
            text = "".join("".join(value.find(part).itertext()) for part in ("briefdescription", "detaileddescription"))
            if text.strip():
                described += 1
            else:
                missing.append(value.findtext("name"))
    for name in sorted(missing):
        print(f"{name} is not described")
    print(f"{described} values are described")
    return 0 if described > 100 and not missing else 1


sys.exit(main(*sys.argv[1:]))
