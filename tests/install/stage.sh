#!/usr/bin/env bash
# Installs a build tree into a staging prefix afresh: stage.sh cmake build-directory source-directory prefix
set -euo pipefail

rm -rf "$4"
"$1" --install "$2" --prefix "$4"

# A path of this checkout in an installed text would let the consumers find what is not installed.
! grep -rIlF -e "$2" -e "$3" "$4"
