"""Readers of the published sources. A source that is missing or not the recorded edition is an error."""

import hashlib
import re
from dataclasses import dataclass
from pathlib import Path

CHECKSUMS = Path(__file__).with_name("sources.sha256")

UCM_LINE = re.compile(r"<U([0-9A-F]{4,6})>\s+((?:\\x[0-9A-F]{2})+)\s+\|([0-4])")


class TableError(Exception):
    """A source or a table is not what this generator was written for."""


@dataclass(frozen=True)
class Character:
    """One record of the character database, first and last code of a block that is listed as such."""

    first: int
    last: int
    category: str
    bidi: str
    decomposition: str
    upper: int | None
    lower: int | None


def recorded_checksums() -> dict[str, str]:
    """The checksums of all sources by their path below the sources directory."""
    lines = CHECKSUMS.read_text(encoding="ascii").splitlines()
    return {path: checksum for checksum, path in (line.split("  ", 1) for line in lines)}


class Sources:
    """A directory that holds the published files, each checked against its recorded checksum when it is read."""

    def __init__(self, directory: Path):
        self.directory = directory
        self.checksums = recorded_checksums()
        self.read_paths: set[str] = set()

    def lines(self, path: str) -> list[str]:
        if path not in self.checksums:
            raise TableError(f"{path}: no checksum is recorded for this source in {CHECKSUMS.name}")
        try:
            content = (self.directory / path).read_bytes()
        except OSError as error:
            raise TableError(f"{path}: can't be read: {error.strerror}") from error
        checksum = hashlib.sha256(content).hexdigest()
        if checksum != self.checksums[path]:
            raise TableError(f"{path}: another edition: sha256 {checksum}, recorded {self.checksums[path]}")
        self.read_paths.add(path)
        return content.decode("latin-1").splitlines()

    def ucm(self, name: str) -> dict[bytes, int]:
        """The round-trip pairs of a .ucm file but for the zero byte: byte sequence to code point."""
        pairs: dict[bytes, int] = {}
        for line in self.lines(f"ucm/{name}"):
            if not line.startswith("<U"):
                continue
            found = UCM_LINE.match(line)
            if not found:
                raise TableError(f"{name}: unknown form of a record: {line}")
            sequence = bytes.fromhex(found[2].replace("\\x", ""))
            if found[3] != "0" or sequence == b"\0":
                continue
            if sequence in pairs:
                raise TableError(f"{name}: {sequence.hex()} occurs twice")
            pairs[sequence] = int(found[1], 16)
        return pairs

    def x0213(self, name: str) -> dict[int, int | None]:
        """The assigned codes of the JIS X 0213 table but for 0: code to code point, None for a sequence of two."""
        pairs: dict[int, int | None] = {}
        for line in self.lines(name):
            if line.startswith("#"):
                continue
            code_text, unicode_text = line.split("\t")[:2]
            code = int(code_text, 16)
            if code == 0 or not unicode_text:
                continue
            if code in pairs:
                raise TableError(f"{name}: {code_text} occurs twice")
            pairs[code] = None if "+" in unicode_text else int(unicode_text, 16)
        return pairs

    def unicode_data(self, name: str) -> list[Character]:
        """The records of the character database in code point order."""
        characters: list[Character] = []
        first = None
        for line in self.lines(name):
            fields = line.split(";")
            code = int(fields[0], 16)
            if fields[1].endswith(", First>"):
                first = code
                continue
            upper, lower = (int(field, 16) if field else None for field in fields[12:14])
            characters.append(Character(code if first is None else first, code, fields[2], fields[4], fields[5],
                                        upper, lower))
            first = None
        return characters
