#!/usr/bin/env bash
# Installs an application that embeds the shared library: with it come the library's files to run with, and no other.
# application.sh cmake build-directory prefix
set -euo pipefail

rm -rf "$3"
"$1" --install "$2" --prefix "$3"
"$3/bin/consumer17"
others=$(find "$3" ! -type d ! -path '*/bin/consumer*' ! -name 'libvynulib64.so.[0-9]*')
[[ -z $others ]] || { printf 'installed too:\n%s\n' "$others"; exit 1; }
