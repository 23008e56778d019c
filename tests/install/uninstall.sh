#!/usr/bin/env bash
# Uninstalls what stage.sh installed, of which nothing may be left, nor a folder of the library's own:
# uninstall.sh cmake uninstall.cmake prefix
set -euo pipefail

[[ -n $(find "$3" -type f) ]]
cd "$3.list"
"$1" -P "$2"
left=$(find "$3" ! -type d -o -name 'vynulib*')
[[ -z $left ]] || { printf 'left behind:\n%s\n' "$left"; exit 1; }
