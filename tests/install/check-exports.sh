#!/usr/bin/env bash
# Fails where the library exports other names than the reviewed list, or one without the version of its symbols:
# check-exports.sh nm library list [absent]
# `absent` is a pattern of the names that this build leaves out. After a change that is meant, write the list anew:
# nm -DC --defined-only --format=just-symbols --without-symbol-versions libvynulib64.so | grep -v VYNULIB64_ | LC_ALL=C sort -u
set -euo pipefail
export LC_ALL=C
version=VYNULIB64_1

exported=$("$1" --dynamic --demangle --defined-only --format=just-symbols "$2" | grep -vx "$version" | sort -u)
diff <(grep -vE "${4:-^$}" "$3" | sed "s/\$/@@$version/" | sort) - <<<"$exported"
