#!/usr/bin/env python3
"""Fails where the guide's list of the files that a new set touches is not the list of those that have a row for each set:
check-guide.py source-directory
"""
import pathlib
import re
import sys

root = pathlib.Path(sys.argv[1])
converters = (root / "charset/StaticConverters.cpp").read_text()
rows = re.findall(r"\{(VYNCS_\w+), (o\w+map)\}", converters)
if len(rows) != 26:
    sys.exit(f"charset/StaticConverters.cpp has {len(rows)} sets of one byte a character")

section = (root / "docs/guide.md").read_text().split("## Add a set")[1]
listed = {name.rstrip("/") for name in re.findall(r"^\d+\. .*?`(\S+?)`", section, re.MULTILINE)}


def covers(path):
    """Whether a file, or the names of the files in a folder, have each of the sets, by its name or its table."""
    names = " ".join(each.name for each in path.iterdir()) if path.is_dir() else path.read_text(errors="replace")
    upper = names.upper()
    return all(re.search(rf"\b({re.escape(s)}|{re.escape(s[6:])})\b", upper) or table in names for s, table in rows)


hand_written = [path for folder in ("base", "charset", "converters", "docs", "include", "string", "tests", "tools", "unicode")
                for path in (root / folder).rglob("*") if path.is_file() and "__pycache__" not in path.parts]
found = {str(path.relative_to(root)) for path in hand_written if covers(path)}
found |= {"tests/samples"} if covers(root / "tests/samples") else set()
if found != listed:
    sys.exit(f"only in the guide: {sorted(listed - found)}, only there: {sorted(found - listed)}")
print(f"{len(rows)} sets in each of {len(found)} places")
