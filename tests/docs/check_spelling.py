"""Spells the documents and the comments of the public headers by the British dictionary and words.txt.

usage: check_spelling.py HEADER...
"""

import pathlib
import re
import subprocess
import sys

HERE = pathlib.Path(__file__).resolve().parent
SOURCE = HERE.parents[1]
WORDS = HERE / "words.txt"


def prose_of_document(text):
    """Without code, comments, addresses and markup."""
    text = re.sub(r"^```.*?^```", "", text, flags=re.M | re.S)
    text = re.sub(r"<!--.*?-->", "", text, flags=re.S)
    text = re.sub(r"`[^`]*`|\b[\w./-]+\.(md|h|html)\b", " ", text)
    return re.sub(r"\]\([^)]*\)", "]", text)


def prose_of_header(text):
    """Its comments without examples, which are indented, and without names from the code."""
    comments = re.findall(r"//[/!]?<?([^\n]*)|/\*(.*?)\*/", text, flags=re.S)
    lines = "\n".join(line or block for line, block in comments).splitlines()
    kept = [line for line in lines if not re.match(r"[ *]{5,}\S", line)]
    prose = re.sub(r"`[^`]*`|NOLINT.*", " ", "\n".join(kept))
    prose = re.sub(r"@(param|copydoc|copydetails|ref)\s+\S+", " ", prose)
    prose = re.sub(r'"[^"\n]*"|@\w+', " ", prose)
    return re.sub(r"\b\w*(_|[a-z][A-Z]|[A-Z]{2}|::|\.(h|dll|exe|ini))[\w:.]*", " ", prose)


def main(headers):
    words = WORDS.read_text(encoding="utf-8").splitlines()
    assert words == sorted(set(words), key=lambda word: (word.lower(), word)), f"{WORDS} is not sorted"

    documents = [SOURCE / "README.md", *sorted((SOURCE / "docs").glob("*.md"))]
    assert len(documents) > 3 and len(headers) > 10, "hardly anything to spell"
    texts = {path: path.read_text(encoding="utf-8") for path in [*documents, *map(pathlib.Path, headers)]}
    prose = {path: prose_of_document(text) if path.suffix == ".md" else prose_of_header(text)
             for path, text in texts.items()}
    finished = subprocess.run(["hunspell", "-i", "utf-8", "-d", "en_GB", "-p", str(WORDS), "-l"],
                              input="\n".join(prose.values()), stdout=subprocess.PIPE, encoding="utf-8", check=True)
    wrong = sorted(set(finished.stdout.split()))
    for word in wrong:
        whole = re.compile(rf"\b{re.escape(word)}\b")
        path = next(path for path in prose if whole.search(prose[path]))
        line = next((number for number, line in enumerate(texts[path].splitlines(), 1) if whole.search(line)), 0)
        print(f"{path.relative_to(SOURCE)}:{line}: {word}")
    if wrong:
        print(f"{len(wrong)} unknown words; what is right belongs into {WORDS.relative_to(SOURCE)}, sorted")
    return 1 if wrong else 0


sys.exit(main(sys.argv[1:]))
