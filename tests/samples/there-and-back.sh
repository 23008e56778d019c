#!/usr/bin/env bash
# Converts the sample text of every set from UTF-8 to the set and back:
# there-and-back.sh sample-directory work-directory command-line-of-vynconv...
set -uo pipefail

samples=$1 encoded=$2/encoded back=$2/back vynconv=("${@:3}")
sets=0 failures=0

fail() {
    echo "$name: $1" >&2
    failures=$((failures + 1))
}

# The sample of VYNCS_KOI8R is koi8r.txt.
while read -r _ name _; do
    sets=$((sets + 1))
    sample=${name#VYNCS_}
    sample=$samples/${sample,,}.txt
    if ! LC_ALL=C grep -q '[^ -~]' "$sample"; then
        fail "no sample beyond ASCII"
    elif ! "${vynconv[@]}" -f UTF8 -t "$name" --on-error=stop -o "$encoded" "$sample"; then
        fail "not encoded"
    elif ! "${vynconv[@]}" -f "$name" -t UTF8 --on-error=stop -o "$back" "$encoded"; then
        fail "not decoded"
    elif ! cmp "$sample" "$back"; then
        fail "came back as another text"
    elif [[ $name != VYNCS_UTF8 ]] && cmp -s "$sample" "$encoded"; then
        fail "is UTF-8"
    fi
    rm -f "$encoded" "$back"
done < <("${vynconv[@]}" --list)

echo "$sets sets, $failures failures"
[[ $sets -eq 43 && $failures -eq 0 ]]
