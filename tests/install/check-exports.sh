#!/usr/bin/env bash
# Fails where the library exports other names than the reviewed list, or one without the version of its symbols:
# check-exports.sh nm library list [absent]
# `absent` is a pattern of the names that this build leaves out. After a change that is meant, write the list anew:
# nm -D --defined-only --format=just-symbols LIBRARY | sed 's|@@.*||' | grep -v ^VYNULIB64_ | c++filt --no-verbose |
# LC_ALL=C sort -u
set -euo pipefail
export LC_ALL=C
version=VYNULIB64_1

exported=$("$1" --dynamic --defined-only --format=just-symbols "$2" | grep -vE "^$version(@@$version)?\$")
if grep -v "@@$version\$" <<<"$exported"; then
    echo "exported without the version $version"
    exit 1
fi
diff <(grep -vE "${4:-^$}" "$3") <(sed "s/@@$version\$//" <<<"$exported" | c++filt --no-verbose | sort -u)
