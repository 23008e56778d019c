#!/usr/bin/env bash
# Fails where the library's binary interface is not the recorded one: check.sh library include-directory work-directory
# A change that is meant, an addition too, is recorded by scripts/record-abi.
set -euo pipefail
here=$(dirname "${BASH_SOURCE[0]}")

mkdir -p "$3"
gzip -dc "$here/vynulib64.abi.gz" >"$3/recorded.abi"
"$here/describe.sh" "$1" "$2" >"$3/current.abi"
abidiff "$3/recorded.abi" "$3/current.abi"
