#!/bin/bash
# SPDX-License-Identifier: MIT
# Installs a build elsewhere and uses it there. Usage: install_test.sh BUILD-FOLDER
set -euo pipefail
prefix=$(mktemp -d)
trap 'rm -rf "$prefix"' EXIT
env -u DESTDIR cmake --install "$1" --prefix "$prefix" >/dev/null

# The driver is found although it no longer lies beside the program, and the stand-in is not on its path.
"$prefix/bin/ostravel-host" describe | grep -q '^Ostravel ' || { echo "describe does not find the driver" >&2; exit 1; }
[ -e "$prefix/lib/ostravel/standin/libAGLink40_x64.so" ] || { echo "the stand-in is not installed" >&2; exit 1; }
for program in ostravel-host ostravel-tags ostravel-plc; do
  "$prefix/bin/$program" --version | grep -q "^$program [0-9]"
  for file in "man/man1/$program.1" "bash-completion/completions/$program" "zsh/site-functions/_$program"; do
    [ -s "$prefix/share/$file" ] || { echo "$file is not installed" >&2; exit 1; }
  done
done
