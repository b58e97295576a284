"""Holds the documents against the tree: every code block is an excerpt of a file that a test runs, every link leads
somewhere, every name of the program's is still one.

A comment in front of a block names its file, from which the block's lines are taken as they stand:

    <!-- from samples/console_c/main.c -->

What cannot be run here is listed in NOT_RUN, with the reason.
"""

import bisect
import pathlib
import re
import sys
import textwrap

SOURCE = pathlib.Path(__file__).resolve().parents[2]

# A file counts as tested when one of these names it, or a command file that they name; of a sample, its folder.
TEST_PROGRAMS = [SOURCE / name for name in (
    "tests/docs/package_documents.py", "tests/docs/commands_test.py", "tests/docs/bindings_test.py",
    "tests/package/package_test.py")]
COMMANDS = SOURCE / "tests/docs/commands"

# (document, first line of the block): why nobody runs it here
NOT_RUN = {
    ("README.md", "pacman -S mingw-w64-i686-{gcc,cmake,ninja,cli11,gtest,curl,libsoxr,python}"): "MSYS2 runs on Windows",
    ("README.md", "cmake -B build\\msvc -A Win32 -DVCPKG_TARGET_TRIPLET=x86-windows ^"): "Visual Studio runs on Windows",
    ("docs/getting-started.md", "lib /def:lib\\speech.def /machine:x86 /out:speech.lib"): "Visual Studio runs on Windows",
    ("docs/getting-started.md", "python samples\\python\\speak.py \"Hello, world.\""): "Python for Windows is not here",
    ("docs/getting-started.md", "csc -platform:x86 -out:bin\\Speak.exe samples\\csharp\\Speak.cs"): ".NET is not here",
    ("docs/service.md", "upstream narravo {"): "part of another server's settings",
}


def is_named(mark, files):
    return any(re.search(rf"\b{re.escape(mark)}\b", file.read_text(encoding="utf-8")) for file in files)


def is_tested(name):
    parts = pathlib.PurePosixPath(name).parts
    mark = parts[1] if parts[0] == "samples" else parts[-1]
    tested_commands = [file for file in COMMANDS.iterdir() if is_named(file.name, TEST_PROGRAMS)]
    return is_named(mark, [*TEST_PROGRAMS, *tested_commands])


def is_excerpt(block, name):
    """Whether the lines stand in the file one behind the other, indented alike more or less."""
    lines = (SOURCE / name).read_text(encoding="utf-8").splitlines()
    return any(textwrap.dedent("\n".join(lines[at:at + len(block)])) == "\n".join(block)
               for at in range(len(lines) - len(block) + 1))


def blocks(text):
    """Line number, name of the file or None, lines."""
    pattern = r"^(?:<!-- from (\S+) -->\n)?^```(\w*)\n(.*?)^```$"
    for match in re.finditer(pattern, text, flags=re.M | re.S):
        yield text.count("\n", 0, match.start()) + 1, match[1], match[3].splitlines()


def anchors(text):
    headings = re.findall(r"^#+ (.*)$", re.sub(r"^```.*?^```", "", text, flags=re.M | re.S), flags=re.M)
    return {re.sub(r"[^\w\- ]", "", heading.lower()).replace(" ", "-") for heading in headings}


def wrong_blocks(document, text):
    if text.count("\n```") + text.startswith("```") != 2 * len(list(blocks(text))):
        yield 1, "a code block does not begin or end as it should"
    for line, name, block in blocks(text):
        if name is None:
            if NOT_RUN.pop((document, block[0] if block else ""), None) is None:
                yield line, "a code block without a file that it is from"
        elif not (SOURCE / name).is_file():
            yield line, f"there is no {name}"
        elif not block or not is_excerpt(block, name):
            yield line, f"not as it stands in {name}"
        elif not is_tested(name):
            yield line, f"no test names {name}"


def wrong_links(document, text):
    for match in re.finditer(r"\]\(([^)\s]*)\)", re.sub(r"`[^`\n]*`", lambda code: " " * len(code[0]), text)):
        address, _, anchor = match[1].partition("#")
        line = text.count("\n", 0, match.start()) + 1
        target = (SOURCE / document).parent / address if address else SOURCE / document
        if re.match(r"https?:", address):
            continue
        if not target.exists():
            yield line, f"the link leads nowhere: {match[1]}"
        elif anchor and anchor not in anchors(target.read_text(encoding="utf-8")):
            yield line, f"there is no such heading: {match[1]}"


def program_words():
    """Every word of the sources, in order, for names and the beginnings of names."""
    words = set()
    for folder in ("include", "speech", "engines", "audio", "lxapi", "framework", "service", "apps", "tests", "cmake",
                   "scripts"):
        for path in (SOURCE / folder).rglob("*"):
            if path.suffix in (".h", ".cpp", ".c", ".py", ".txt", ".cmake", ".sh"):
                words.update(re.findall(r"\w+", path.read_text(encoding="utf-8", errors="replace")))
    # A page on the engine library leaves its functions' common beginning out.
    return sorted(words | {word.removeprefix("LXAPI_") for word in words})


def wrong_names(text, words):
    """Words in backticks that look like names of code, by an inner capital or an underscore."""
    for match in re.finditer(r"`([\w:]+)(?:\([^`]*)?`", text):
        for name in match[1].split("::"):
            at = bisect.bisect_left(words, name)
            if re.search(r"\w_|[a-z][A-Z]", name) and (at == len(words) or not words[at].startswith(name)):
                yield text.count("\n", 0, match.start()) + 1, f"nothing is named {name}"


def main():
    words = program_words()
    documents = ["README.md", *(f"docs/{path.name}" for path in sorted((SOURCE / "docs").glob("*.md")))]
    wrong = block_count = 0
    for document in documents:
        text = (SOURCE / document).read_text(encoding="utf-8")
        block_count += len(list(blocks(text)))
        for line, what in [*wrong_blocks(document, text), *wrong_links(document, text), *wrong_names(text, words)]:
            wrong += 1
            print(f"{document}:{line}: {what}")
    for document, first_line in NOT_RUN:
        wrong += 1
        print(f"{document}: the block that is allowed not to run is gone: {first_line}")
    print(f"{len(documents)} documents, {block_count} blocks, {wrong} faults")
    return 0 if wrong == 0 and block_count > 0 else 1


sys.exit(main())
