#!/usr/bin/env bash
# Fails where the library exports other names than the reviewed list: check-exports.sh nm library list [absent]
# `absent` is a pattern of the names that this build leaves out. After a change that is meant, write the list anew:
# nm -DC --defined-only --format=just-symbols libvynulib64.so | LC_ALL=C sort -u
set -euo pipefail
export LC_ALL=C

exported=$("$1" --dynamic --demangle --defined-only --format=just-symbols "$2" | sort -u)
diff <(grep -vE "${4:-^$}" "$3") - <<<"$exported"
