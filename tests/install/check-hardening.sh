#!/usr/bin/env bash
# Fails where a library or program lacks what hardening flags make: check-hardening.sh readelf binary symbol...
# The symbols are of the functions that checks call.
set -euo pipefail

binary=$2
loaded=$("$1" --wide --dynamic --segments --dyn-syms "$binary")
for mark in 'Flags: .*NOW' GNU_RELRO "${@:3}"; do
    grep -qE "$mark" <<<"$loaded" || { echo "$binary has no $mark" >&2; exit 1; }
done
