#!/bin/bash
# SPDX-License-Identifier: MIT
# Makes each manual page and looks at it as man would, with all warnings. Ends with 77 when groff is missing, after
# scdoc has been tried.
set -euo pipefail
cd "$(dirname "$0")/../../man"
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
for source in *.scd; do
  page=$folder/${source%.scd}
  scdoc <"$source" >"$page"
  for heading in NAME SYNOPSIS DESCRIPTION OPTIONS 'EXIT STATUS' 'SEE ALSO'; do
    grep -q "^.SH $heading\$" "$page" || { echo "$source: has no section $heading" >&2; exit 1; }
  done
done
command -v groff >/dev/null || { echo "no groff here"; exit 77; }
for page in "$folder"/*; do
  warnings=$(groff -man -Tutf8 -ww -z "$page" 2>&1)
  [ -z "$warnings" ] || { echo "$warnings" >&2; exit 1; }
done
