#!/usr/bin/env bash
# Checks manual pages and completions with the tools that are there: check-vynconv.sh source-directory directory-of-vynconv
set -uo pipefail
cd "$1"
PATH=$2:$PATH
failures=0

fail() {
    echo "$1" >&2
    failures=$((failures + 1))
}

for page in docs/man/*; do
    ! command -v mandoc >/dev/null || mandoc -T lint -W warning "$page" || fail "mandoc: $page"
    ! command -v groff >/dev/null || [[ -z $(groff -mandoc -ww -z "$page" 2>&1 | tee /dev/stderr) ]] || fail "groff: $page"
done

# Every long option of the help, and no other, is in the manual page and in both completions.
options() { grep -oE -- "--[a-z][a-z-]+" | sort -u; }
expected=$(vynconv --help | options)
[[ -n $expected ]] || fail "no options"
diff <(echo "$expected") <(sed 's/Fl Fl /--/g' docs/man/vynconv.1 | grep -v '^\.Dl' | options) || fail "the manual page differs"
for file in tools/vynconv/completion/*; do
    diff <(echo "$expected") <(options <"$file") || fail "$file differs"
done

# What bash makes of a line that ends where the cursor is.
source tools/vynconv/completion/vynconv.bash
completes() {
    COMP_WORDS=(vynconv "${@:2}") COMP_CWORD=$(($# - 1)) COMPREPLY=()
    _vynconv
    [[ "${COMPREPLY[*]}" == "$1" ]] || fail "'${*:2}' gave '${COMPREPLY[*]}', not '$1'"
}
completes "KOI8-R" -f koi
completes "-fKOI8-R" -fKoi
completes "GBK GB2312 GB18030" --to-code = gb
completes "--on-error=" --on
completes "replace escape drop stop" --on-error =
completes "README.md" -o READ
completes "CMakePresets.json" -f utf8 CMakeP
command -v zsh >/dev/null && { zsh -n tools/vynconv/completion/_vynconv || fail "zsh"; }
[[ $failures -eq 0 ]]
