#!/usr/bin/env bash
# Fails where a function that the library exports is not called by the program, unless it stands in the list of those that
# are not: check-calls.sh nm program exported-symbols not-called
# Destructors count as called: all objects of the program have one.
set -euo pipefail
export LC_ALL=C

called=$("$1" --undefined-only --format=just-symbols "$2" | sed 's/@.*//' | c++filt --no-verbose | sort -u)
functions=$(grep -E '\(|^Java_' "$3" | grep -vF '~' | sort -u)
listed=$(grep -v '^#' "$4" | sort -u)
diff - <(comm -23 <(echo "$functions") <(sort -u <<<"$called"$'\n'"$listed")) </dev/null
diff - <(comm -23 <(echo "$listed") <(echo "$functions")) </dev/null # what is listed is still there
