#!/usr/bin/env bash
# Prints the library's binary interface, without what another folder or compiler would change:
# describe.sh library include-directory
set -euo pipefail

abidw --no-show-locs --no-comp-dir-path --no-corpus-path --no-elf-needed --no-parameter-names --exported-interfaces-only \
    --drop-private-types --headers-dir "$2" --suppressions "$(dirname "${BASH_SOURCE[0]}")/suppressions.ini" "$1"
