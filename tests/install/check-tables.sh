#!/usr/bin/env bash
# Fails where a table needs writable memory or start-up code: check-tables.sh nm objects...
# Every symbol of the objects, local ones included, has to lie in read-only data.
set -euo pipefail

symbols=$("$1" --format=posix --defined-only "${@:2}")
grep -q ' R ' <<<"$symbols"
! grep -vE ':$|^$| [Rr] ' <<<"$symbols"
