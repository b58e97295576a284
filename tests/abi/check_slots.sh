#!/usr/bin/env bash
# check_slots.sh BUILD_FOLDER: holds the slots of the interface's virtual tables, as the Microsoft ABI lays them out,
# against slots.txt. Hosts call by slot number.
set -euo pipefail

ninja -C "$1" -t clean interface_layout
ninja -C "$1" interface_layout | sed -n "/^VFTable indices for '\(ITextToSpeech\|LXAPIProduct\)'/,/^$/p" |
  diff -u "$(dirname "$0")/slots.txt" -
