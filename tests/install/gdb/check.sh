#!/usr/bin/env bash
# Compares what GDB prints with what is expected: check.sh gdb program prefix library-directory
set -euo pipefail

printed=$(LC_ALL=C.UTF-8 LD_LIBRARY_PATH=$3/$4 "$1" -batch -nx \
    -iex "add-auto-load-safe-path $3/share/gdb/auto-load" \
    -iex "add-auto-load-scripts-directory $3/share/gdb/auto-load" \
    -ex "break stopHere" -ex run -ex up -ex "print empty" -ex "print text" -ex "print longText" -ex "print list" \
    -ex "print named" -ex "print unknown" "$2" </dev/null | grep '^\$')
diff <(echo "$printed") - <<'END'
$1 = u""
$2 = u"Ж一 \"x\"\000z"
$3 = u'a' <repeats 200 times>...
$4 = {u"Ж一 \"x\"\000z", u""}
$5 = VYNCS_KOI8R (20866)
$6 = unknown set (7)
END
