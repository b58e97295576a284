"""Holds the documents against the tree: every code block stands in the file that the comment before it names, every link
leads somewhere.

    <!-- from samples/console_c/main.c -->
    <!-- not run here: Visual Studio runs on Windows -->
"""

import pathlib
import re
import sys

SOURCE = pathlib.Path(__file__).resolve().parents[2]


def without_indent(text):
    return "\n".join(line.strip() for line in f"\n{text}\n".splitlines())


def wrong_blocks(document, text):
    blocks = re.findall(r"^(?:<!-- (from|not run here:) ([^\n]+) -->\n)?```\w*\n(.*?)^```$", text, flags=re.M | re.S)
    if 2 * len(blocks) != len(re.findall("^```", text, flags=re.M)):
        yield "a code block does not begin or end as it should"
    for kind, name, block in blocks:
        if not kind:
            yield f"nothing says where this block is from: {block}"
        elif kind == "from" and without_indent(block) not in without_indent((SOURCE / name).read_text("utf-8")):
            yield f"this block is not as it stands in {name}: {block}"


def anchors(path):
    headings = re.findall(r"^#+ (.*)$", path.read_text("utf-8"), flags=re.M)
    return {re.sub(r"[^\w\- ]", "", heading.lower()).replace(" ", "-") for heading in headings}


def wrong_links(document, text):
    for link in re.findall(r"\]\(([^)\s]*)\)", re.sub(r"`[^`\n]*`", "", text)):
        address, _, anchor = link.partition("#")
        target = document.parent / address if address else document
        if not link.startswith("http") and (not target.exists() or anchor and anchor not in anchors(target)):
            yield f"the link leads nowhere: {link}"


documents = [SOURCE / "README.md", *sorted((SOURCE / "docs").glob("*.md"))]
faults = [f"{path.relative_to(SOURCE)}: {fault}" for path in documents for check in (wrong_blocks, wrong_links)
          for fault in check(path, path.read_text("utf-8"))]
sys.exit("\n".join(faults) or (0 if len(documents) > 5 else "hardly any documents"))
