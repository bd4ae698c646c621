#!/bin/bash
# ./live from PLC sources to values, and what it says of sources that are not there.
# Usage: live_test.sh ROOT BUILD
set -eu
root=$1
export OSTRAVEL_BUILD=$2
fail() {
  echo "live_test: $1" >&2
  exit 1
}

output=$("$root/live" "$root/simulator/samples/plant.db" "$root/simulator/samples/motor.udt" -- --plain --count 5 2>&1) || fail "ended with $?: $output"
grep -q 'Plant\.Motors\[2\]\.Label.*mixer' <<<"$output" || fail "the text of an array's element is missing: $output"
grep -q 'Plant\.Live\.Running.*ok' <<<"$output" || fail "no value is good: $output"

status=0
output=$("$root/live" nowhere.db 2>&1) || status=$?
[ "$status" = 2 ] || fail "a missing source ends with $status instead of 2"
[ "$output" = "live: nowhere.db: no such file, or it cannot be read; give text sources of PLC blocks" ] || fail "says: $output"

status=0
output=$("$root/live" "$root/README.md" 2>&1) || status=$?
[ "$status" = 2 ] || fail "a file that is no source ends with $status instead of 2"
grep -q 'README.md:' <<<"$output" || fail "does not name the place: $output"
