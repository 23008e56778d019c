#!/usr/bin/env bash
# Configures the library for folders that are given from the root: vynulib64.pc has to name them.
# absolute.sh cmake source-directory build-directory
set -euo pipefail

rm -rf "$3"
"$1" -S "$2" -B "$3" -DCMAKE_INSTALL_PREFIX=/opt/vynulib -DCMAKE_INSTALL_LIBDIR=/srv/lib \
    -DVYNULIB_BUILD_TESTS=OFF -DVYNULIB_BUILD_EXAMPLES=OFF -DVYNULIB_JAVA=OFF >"$3.log" || { cat "$3.log"; exit 1; }
flags=$(PKG_CONFIG_PATH=$3 pkg-config --cflags --libs vynulib64)
[[ $flags == "-I/opt/vynulib/include -L/srv/lib -lvynulib64 " ]] || { printf 'flags are: %s\n' "$flags"; exit 1; }
