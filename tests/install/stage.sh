#!/usr/bin/env bash
# Installs a build tree into a staging prefix afresh: stage.sh cmake build-directory source-directory prefix
# The list of what it installed is then in prefix.list: that of the build tree stays as the user left it.
set -euo pipefail

manifest=$2/install_manifest.txt
rm -rf "$4" "$4.list"
mkdir -p "$4.list"
[[ ! -f $manifest ]] || cp -p "$manifest" "$4.list/users"
"$1" --install "$2" --prefix "$4"
mv "$manifest" "$4.list/"
[[ ! -f $4.list/users ]] || mv "$4.list/users" "$manifest"

# A path of this checkout in an installed text would let the consumers find what is not installed.
! grep -rIlF -e "$2" -e "$3" "$4"
