#!/usr/bin/env bash
# Runs what the documents say about the source tree, as they say it: some of commands/*.sh.
set -euxo pipefail
commands=$(realpath "$(dirname "$0")")/commands
cd "$commands/../../.."
work=$(mktemp -d)
trap 'rm -rf "$work"; [ -z "${service:-}" ] || kill -- "-$service"' EXIT

[ "$("$BASH" -eu "$commands/hear.sh")" = "Hello, world." ]

# The service's own port, which runs in other trees want too.
exec 9>"${TMPDIR:-/tmp}/narravo-port-59125.lock"
flock 9
"$BASH" -eu "$commands/demo_cloud.sh" 9>&-
setsid "$BASH" -eu "$commands/service.sh" 9>&- >"$work/announcement" &
service=$!
grep -m 1 "http://127.0.0.1:59125/a/speak" < <(tail -f --pid=$service "$work/announcement")
(cd "$work" && "$BASH" -eu "$commands/request.sh")
[ "$(soxi -s "$work/hello.wav")" -gt 10000 ]
