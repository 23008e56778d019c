#!/usr/bin/env bash
# What is compiled for one instruction set must be called nowhere else: its objects define their table and nothing that
# the linker might take for other objects too.
# check-levels.sh OBJECT...
set -euo pipefail

levels=0
for object in "$@"; do
    [[ $object == *kernels/levels/* ]] || continue
    levels=$((levels + 1))
    others=$(nm --demangle --defined-only --extern-only "$object" | grep -v ' [RD] vyn::[a-z0-9]*Kernels$') || continue
    printf '%s defines:\n%s\n' "$object" "$others"
    exit 1
done
if [[ $levels == 0 ]]; then
    echo "no object of a level among: $*"
    exit 1
fi
