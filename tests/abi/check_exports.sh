#!/usr/bin/env bash
# check_exports.sh DLL: holds what speech.dll exports against what hosts link to: the plain functions of speech.def, the
# members of the interface's classes (classes.txt), and nothing else.
set -euo pipefail
export LC_ALL=C

names=$(i686-w64-mingw32-objdump -p "$1" | sed -n 's/^\t\[ *[0-9]*\] \([A-Za-z_]\)/\1/p')
cd "$(dirname "$0")"
diff -u <(sed '1,/^EXPORTS/d; s/^ *//' ../../speech/speech.def) <(grep -v '^_Z' <<<"$names" | sort)
diff -u classes.txt <(grep '^_Z' <<<"$names" | c++filt | sort -u)
