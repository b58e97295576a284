#!/usr/bin/env bash
# bindings_test.sh STAND_IN: runs the samples in Python and C# against a stand-in of the library, built for this machine
# from the same header.
set -euxo pipefail
cd "$(dirname "$0")/../../samples"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mcs -platform:x86 -warnaserror "-out:$work/Speak.exe" csharp/Speak.cs

export SPEECH_DLL=$1 LD_LIBRARY_PATH=${1%/*} LC_ALL=C.UTF-8
for speak in "python3 -B python/speak.py" "mono $work/Speak.exe"; do
  [ "$($speak "One, twö.")" = $'One\ntwö' ]
  [ "$($speak "Three." 2>&1 || echo $?)" = $'refused\n1' ]
done
