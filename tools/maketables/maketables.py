#!/usr/bin/env python3
"""Writes the compiled tables (tables/*.cpp, tables/Tables.h) from the published sources, or checks them.

tables/README.md says where each source is published and how a table differs from it.
"""

import argparse
import shlex
import sys
from collections.abc import Callable, Iterable
from pathlib import Path

import render
from render import Record, Table
from sources import Character, Sources, TableError

ROOT = Path(__file__).resolve().parents[2]

Map = dict[int, int]

# ---- Steps that several tables share ---------------------------------------------------------------------------------


def expect(table: str, what: str, found: object, wanted: object) -> None:
    if found != wanted:
        raise TableError(f"{table}: {what}: {found}, expected {wanted}")


def change(table: str, pairs: Map, code: int, published: int, wanted: int | None) -> None:
    """One deviation, which must still be one: what the source says and what the table says instead (None: nothing)."""
    expect(table, f"published value of {code:#x}", pairs.get(code), published)
    if wanted is None:
        del pairs[code]
    else:
        pairs[code] = wanted


def by_code(pairs: dict[bytes, int]) -> Map:
    return {int.from_bytes(sequence, "big"): value for sequence, value in pairs.items()}


def compiled_map(table: str, pairs: Map, origin: str, records: int, single_bytes: int,
                 form: render.Form = render.MAP, by_unicode: bool = False) -> Table:
    """The table of a map that has the stated numbers of records and no code and no Unicode value twice."""
    expect(table, "records", len(pairs), records)
    expect(table, "single-byte codes", sum(code < 0x100 for code in pairs), single_bytes)
    expect(table, "different Unicode values", len(set(pairs.values())), records)
    largest = 0xFFFF if form == render.MAP else 0x10FFFF
    if not all(0 < code <= 0xFFFF and 0 < value <= largest for code, value in pairs.items()):
        raise TableError(f"{table}: a value lies outside its range")
    key_name, key = ("unit", 1) if by_unicode else ("code", 0)
    ordered = sorted(pairs.items(), key=lambda pair: pair[key])
    return Table(table, form, origin, tuple(ordered), key_name, key)


def runs(pairs: Iterable[tuple[int, int]], step: int) -> list[Record]:
    """The maximal runs (first, last, value of first) in which the value grows by `step` as the key grows by one."""
    found: list[list[int]] = []
    for key, value in sorted(pairs):
        if found and key == found[-1][1] + 1 and value == found[-1][2] + step * (key - found[-1][0]):
            found[-1][1] = key
        else:
            found.append([key, key, value])
    return [(first, last, value) for first, last, value in found]


def compiled_ranges(table: str, form: render.Form, origin: str, ranges: list[Record], records: int) -> Table:
    expect(table, "records", len(ranges), records)
    for (_, last, _), (first, _, _) in zip(ranges, ranges[1:]):
        if first <= last:
            raise TableError(f"{table}: the ranges at {first:#x} overlap or are not sorted")
    return Table(table, form, origin, tuple(ranges), "first")


# ---- Maps that equal their source ------------------------------------------------------------------------------------

# Table, source, records, records of single bytes. The last two equal: a single-byte set, ascending by unit.
PLAIN_MAPS = (
    ("oCP1250map", "windows-1250-2000.ucm", 255, 255),
    ("oCP1251map", "windows-1251-2000.ucm", 255, 255),
    ("oCP1252map", "windows-1252-2000.ucm", 255, 255),
    ("oCP1254map", "windows-1254-2000.ucm", 255, 255),
    ("oCP1256map", "windows-1256-2000.ucm", 255, 255),
    ("oCP1258map", "windows-1258-2000.ucm", 255, 255),
    ("oCP874map", "ibm-874_P100-1995.ucm", 218, 218),
    ("o8859_1map", "iso-8859_1-1998.ucm", 255, 255),
    ("o8859_2map", "iso-8859_2-1999.ucm", 255, 255),
    ("o8859_3map", "iso-8859_3-1999.ucm", 248, 248),
    ("o8859_4map", "iso-8859_4-1998.ucm", 255, 255),
    ("o8859_5map", "iso-8859_5-1999.ucm", 255, 255),
    ("o8859_6map", "iso-8859_6-1999.ucm", 210, 210),
    ("o8859_7map", "iso-8859_7-2003.ucm", 252, 252),
    ("o8859_8map", "iso-8859_8-1999.ucm", 219, 219),
    ("o8859_9map", "iso-8859_9-1999.ucm", 255, 255),
    ("o8859_10map", "iso-8859_10-1998.ucm", 255, 255),
    ("o8859_11map", "iso-8859_11-2001.ucm", 247, 247),
    ("o8859_13map", "iso-8859_13-1998.ucm", 255, 255),
    ("o8859_14map", "iso-8859_14-1998.ucm", 255, 255),
    ("o8859_15map", "iso-8859_15-1999.ucm", 255, 255),
    ("o8859_16map", "iso-8859_16-2001.ucm", 255, 255),
    ("oKOI8Rmap", "glibc-KOI8_R-2.3.3.ucm", 255, 255),
    ("oCP932map", "ibm-932_P12A_P12A-2000_U2.ucm", 9338, 193),
    ("oCP936map", "windows-936-2000.ucm", 24069, 129),
    ("oCP949map", "windows-949-2000.ucm", 17365, 129),
    ("oCP950map", "ibm-950_P110-1999.ucm", 20202, 127),
    ("oSHIFTJISmap", "ibm-943_P15A-2003.ucm", 9396, 190),
    ("oBIG5map", "windows-950-2000.ucm", 19839, 129),
)


def plain_maps(sources: Sources) -> list[Table]:
    return [compiled_map(table, by_code(sources.ucm(source)), source, records, single, by_unicode=records == single)
            for table, source, records, single in PLAIN_MAPS]


# ---- Windows code pages with undefined bytes -------------------------------------------------------------------------


def drop_stand_ins(table: str, pairs: Map, undefined: Iterable[int]) -> None:
    """The source gives undefined bytes a private-use stand-in for the sake of round trips; here they have none."""
    stand_ins = [code for code, value in pairs.items() if 0xE000 <= value <= 0xF8FF]
    expect(table, "bytes with a stand-in", sorted(stand_ins), sorted(undefined))
    for code in stand_ins:
        del pairs[code]


def cp1253(sources: Sources) -> Table:
    source = "windows-1253-2000.ucm"
    pairs = by_code(sources.ucm(source))
    change("oCP1253map", pairs, 0xAA, 0xF8F9, 0xAA)  # undefined, but carried as the character of the same value
    drop_stand_ins("oCP1253map", pairs, (0xD2, 0xFF))
    return compiled_map("oCP1253map", pairs, source, 253, 253, by_unicode=True)


def cp1255(sources: Sources) -> Table:
    source = "windows-1255-2000.ucm"
    pairs = by_code(sources.ucm(source))
    change("oCP1255map", pairs, 0xCA, 0x5BA, None)  # a point that code page 1255 itself leaves undefined
    drop_stand_ins("oCP1255map", pairs, (*range(0xD9, 0xE0), 0xFB, 0xFC, 0xFF))
    return compiled_map("oCP1255map", pairs, source, 244, 244, by_unicode=True)


def cp1257(sources: Sources) -> Table:
    source = "windows-1257-2000.ucm"
    pairs = by_code(sources.ucm(source))
    drop_stand_ins("oCP1257map", pairs, (0xA1, 0xA5))
    return compiled_map("oCP1257map", pairs, source, 253, 253, by_unicode=True)


# ---- East Asian sets that need a rule --------------------------------------------------------------------------------


def shift_jis_2004(sources: Sources) -> Table:
    """A record holds one code point: the characters that take a base and a combining mark are left out."""
    table, source = "oSJIS0213_2004map", "sjis-0213-2004-std.txt"
    published = sources.x0213(source)
    pairs = {code: value for code, value in published.items() if value is not None}
    expect(table, "sequences of two code points", len(published) - len(pairs), 25)
    expect(table, "records beyond the BMP", sum(value > 0xFFFF for value in pairs.values()), 303)
    return compiled_map(table, pairs, source, 11398, 190, render.WIDE_MAP)


def euc_rows(sources: Sources, source: str) -> Map:
    """The 94 x 94 set of an EUC file, high bits cleared (what follows a single shift is another set)."""
    return {int.from_bytes(sequence, "big") & 0x7F7F: value for sequence, value in sources.ucm(source).items()
            if len(sequence) == 2 and sequence[0] >= 0xA1}


def ks_x_1001(sources: Sources) -> Table:
    source = "glibc-EUC_KR-2.1.2.ucm"
    return compiled_map("oKSX1001map", euc_rows(sources, source), source, 8224, 0)


def gb_2312(sources: Sources) -> Table:
    source = "glibc-EUC_CN-2.3.3.ucm"
    return compiled_map("oGB2312map", euc_rows(sources, source), source, 7445, 0)


def jis_x_0208(sources: Sources) -> Table:
    source = "glibc-EUC_JP-2.3.3.ucm"
    pairs = euc_rows(sources, source)
    change("oJIS0208map", pairs, 0x2140, 0xFF3C, 0x5C)  # as JIS X 0201 has no backslash: this one is the backslash
    return compiled_map("oJIS0208map", pairs, source, 6879, 0)


def jis_x_0201(_: Sources) -> Table:
    """ASCII without DEL, yen sign and overline at their places, and the half-width katakana."""
    pairs = {code: code for code in range(0x01, 0x7F)} | {0x5C: 0xA5, 0x7E: 0x203E}
    pairs |= {code: 0xFF61 + code - 0xA1 for code in range(0xA1, 0xE0)}
    return compiled_map("oJIS0201map", pairs, "the rule of JIS X 0201", 189, 189)


def jis_x_0212(_: Sources) -> Table:
    """The plane behind SS3 has a place in EUC-JP but no characters."""
    return compiled_map("oJIS0212map", {}, "an empty set", 0, 0)


# ---- GB18030 ---------------------------------------------------------------------------------------------------------


def gb18030(sources: Sources) -> list[Table]:
    """The one- and two-byte map, and the ranges of keys. A four-byte key is 0x10000 + the linear index."""
    cp936_source, gb18030_source = "windows-936-2000.ucm", "gb-18030-2000.ucm"
    origin = f"{cp936_source} and {gb18030_source}"
    cp936 = by_code(sources.ucm(cp936_source))
    published = sources.ucm(gb18030_source)
    gbk = by_code({sequence: value for sequence, value in published.items() if len(sequence) <= 2})
    # GB18030 has all codes of code page 936 but for two single bytes.
    expect("oGBKmap", "codes of code page 936 alone", sorted(cp936.keys() - gbk.keys()), [0x80, 0xFF])
    # Stays the private-use unit of code page 936, so that U+1E3F has four bytes; the source has the two swapped.
    change("oGBKmap", gbk, 0xA8BC, 0x1E3F, cp936[0xA8BC])

    two_byte = runs(((code, value) for code, value in gbk.items() if cp936.get(code) != value), 1)
    expect("oGB2UniRange", "two-byte ranges", len(two_byte), 59)
    no_code = sorted(set(range(0x80, 0x10000)) - set(range(0xD800, 0xE000)) - set(gbk.values()))
    four_byte_key = {0x10000 + index: value for index, value in enumerate(no_code)}
    four_byte = runs(four_byte_key.items(), 1)
    check_four_byte_keys(four_byte_key, published)

    forward = two_byte + four_byte
    inverse = sorted((value, value + last - first, first) for first, last, value in forward)
    return [compiled_map("oGBKmap", gbk, origin, 24067, 127),
            compiled_ranges("oGB2UniRange", render.GB_RANGES, origin, forward, 265),
            compiled_ranges("oUni2GBRange", render.GB_RANGES, origin, inverse, 265)]


def check_four_byte_keys(computed: Map, published: dict[bytes, int]) -> None:
    """The source lists a part of the four-byte codes; the computed ones must agree but for the swapped character."""
    differing = []
    for sequence, value in published.items():
        if len(sequence) == 4:
            b1, b2, b3, b4 = sequence
            key = 0x10000 + (b1 - 0x81) * 12600 + (b2 - 0x30) * 1260 + (b3 - 0x81) * 10 + b4 - 0x30
            if computed.get(key) != value:
                differing.append((sequence.hex(), value, computed.get(key)))
    expect("oGB2UniRange", "four-byte codes unlike the source", differing, [("8135f437", 0xE7C7, 0x1E3F)])


# ---- Lead-byte types -------------------------------------------------------------------------------------------------

# Bit 0x40: lead byte, 0x80: trail byte; low bits: 1 letter, 2 punctuation, 4 digit, 8 space, 0x10 lower, 0x20 upper.
# Ranges (first, last, type); bytes that are not listed are 0.
CP936_BYTES = ((0x20, 0x20, 0x08), (0x21, 0x2F, 0x02), (0x30, 0x39, 0x04), (0x3A, 0x3F, 0x02), (0x40, 0x40, 0x82),
               (0x41, 0x5A, 0xA1), (0x5B, 0x60, 0x82), (0x61, 0x7A, 0x91), (0x7B, 0x7E, 0x82), (0x7F, 0x7F, 0x80),
               (0x81, 0xA0, 0x40), (0xA1, 0xFE, 0xC0))
BYTE_TYPES = {
    "oCP932Type": ((0x20, 0x20, 0x08), (0x21, 0x2F, 0x02), (0x30, 0x39, 0x04), (0x3A, 0x3F, 0x02), (0x40, 0x40, 0x82),
                   (0x41, 0x5A, 0xA1), (0x5B, 0x60, 0x82), (0x61, 0x7A, 0x91), (0x7B, 0x7D, 0x82), (0x7E, 0x7E, 0x81),
                   (0x80, 0x80, 0x80), (0x81, 0x9F, 0xC0), (0xA0, 0xA0, 0x80), (0xA1, 0xA5, 0x82), (0xA6, 0xDF, 0x81),
                   (0xE0, 0xFC, 0xC0)),
    "oCP936Type": CP936_BYTES,
    "oCP949Type": ((0x20, 0x20, 0x08), (0x21, 0x2F, 0x02), (0x30, 0x39, 0x04), (0x3A, 0x40, 0x02), (0x41, 0x5A, 0xA1),
                   (0x5B, 0x60, 0x02), (0x61, 0x7A, 0x91), (0x7B, 0x7E, 0x02), (0x81, 0xFE, 0xC0)),
    "oCP950Type": CP936_BYTES,
    "oBig5Type": tuple(entry for entry in CP936_BYTES if entry[0] != 0x7F),  # 0x7F is no trail byte in Big5
}


def byte_types(_: Sources) -> list[Table]:
    tables = []
    for table, ranges in BYTE_TYPES.items():
        types = {byte: value for first, last, value in ranges for byte in range(first, last + 1)}
        expect(table, "bytes listed once", len(types), sum(last - first + 1 for first, last, _ in ranges))
        records = tuple((byte, types.get(byte, 0)) for byte in range(0x100))
        tables.append(Table(table, render.BYTE_TYPES, "its list of byte ranges", records, "byte"))
    return tables


# ---- Character properties --------------------------------------------------------------------------------------------

UNICODE_DATA = "UnicodeData-2.0.14.txt"

CATEGORY_BITS = {"Zs": 0x0001, "Zl": 0x0001, "Zp": 0x0001, "Nd": 0x0002, "Nl": 0x0002, "No": 0x0002,
                 "Lu": 0x0044, "Ll": 0x0084, "Lt": 0x0104, "Lm": 0x0204, "Lo": 0x0004,
                 "Mn": 0x0008, "Mc": 0x0008, "Me": 0x0008}
PUNCTUATION, RIGHT_TO_LEFT, EAST_ASIAN, HALF_WIDTH, FULL_WIDTH = 0x0010, 0x0020, 0x0400, 0x4000, 0x8000

SPACES_BY_CODE = {0x09, 0x0A, 0x0D, 0x200B}  # TAB, LF, CR and the zero-width space, which no category marks as spaces
EAST_ASIAN_BLOCKS = ((0x1100, 0x11FF), (0x3001, 0x319F), (0xFE30, 0xFE4F), (0xFF61, 0xFFDC))
# VynUChar::getCharClass knows these by range, surrogates included; they need no records.
CLASSES_BY_RANGE = ((0x2E80, 0x2E99), (0x2E9B, 0x2EF3), (0x2F00, 0x2FD5), (0x3400, 0x4DB5), (0x4E00, 0x9FA5),
                    (0xA000, 0xA48C), (0xAC00, 0xD7A3), (0xD800, 0xDFFF), (0xF900, 0xFA2D))


def within(code: int, ranges: Iterable[tuple[int, int]]) -> bool:
    return any(first <= code <= last for first, last in ranges)


def class_bits(character: Character) -> int:
    code = character.first
    bits = CATEGORY_BITS.get(character.category, 0)
    bits |= PUNCTUATION if character.category.startswith("P") else 0
    bits |= CATEGORY_BITS["Zs"] if code in SPACES_BY_CODE else 0
    bits |= RIGHT_TO_LEFT if character.bidi == "R" else 0
    bits |= EAST_ASIAN if within(code, EAST_ASIAN_BLOCKS) else 0
    bits |= HALF_WIDTH if character.decomposition.startswith("<narrow>") else 0
    bits |= FULL_WIDTH if character.decomposition.startswith("<wide>") else 0
    return bits


def class_table(sources: Sources) -> Table:
    classes: Map = {}
    for character in sources.unicode_data(UNICODE_DATA):
        if within(character.first, CLASSES_BY_RANGE) or character.category == "Co":
            continue
        expect("classTable", f"codes in the record of {character.first:#x}", character.last - character.first + 1, 1)
        if bits := class_bits(character):
            classes[character.first] = bits
    return compiled_ranges("classTable", render.UNIT_RANGES, UNICODE_DATA, runs(classes.items(), 0), 1081)


def case_tables(sources: Sources) -> list[Table]:
    characters = sources.unicode_data(UNICODE_DATA)
    lower = {character.first: character.lower for character in characters if character.lower}
    upper = {character.first: character.upper for character in characters if character.upper}
    expect("toLowerTable", "mapped units", len(lower), 704)
    expect("toUpperTable", "mapped units", len(upper), 673)
    return [compiled_ranges(table, render.UNIT_RANGES, UNICODE_DATA, runs(pairs.items(), 1), records)
            for table, pairs, records in (("toLowerTable", lower, 369), ("toUpperTable", upper, 375))]


# ---- All tables ------------------------------------------------------------------------------------------------------

BUILDERS: tuple[Callable[[Sources], Table | list[Table]], ...] = (
    plain_maps, cp1253, cp1255, cp1257, shift_jis_2004, ks_x_1001, gb_2312, jis_x_0208, jis_x_0201, jis_x_0212,
    gb18030, byte_types, class_table, case_tables)


def generate(sources: Sources) -> dict[str, str]:
    """The text of every generated file by its name."""
    tables: list[Table] = []
    for build in BUILDERS:
        built = build(sources)
        tables += built if isinstance(built, list) else [built]
    expect("all tables", "sources without use", sorted(sources.checksums.keys() - sources.read_paths), [])
    files = {f"{table.name}.cpp": render.source(table) for table in tables}
    expect("all tables", "different names", len(files), len(tables))
    return files | {"Tables.h": render.header(tables)}


def differences(files: dict[str, str], directory: Path) -> list[str]:
    """What keeps the directory from being current, one line each."""
    present = {path.name for pattern in ("*.cpp", "*.h") for path in directory.glob(pattern)}
    found = [f"{name} is not a generated table" for name in sorted(present - files.keys())]
    for name, text in sorted(files.items()):
        if name not in present:
            found.append(f"{name} is missing")
        elif (directory / name).read_bytes() != text.encode("ascii"):
            found.append(f"{name} is not what the sources give")
    return found


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__, allow_abbrev=False,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--sources", type=Path, required=True, metavar="DIR", help="the published sources")
    parser.add_argument("--output", type=Path, default=ROOT / "tables", metavar="DIR", help="default: tables/")
    parser.add_argument("--check", action="store_true", help="write nothing; fail if a committed table is not current")
    arguments = parser.parse_args()
    try:
        files = generate(Sources(arguments.sources))
        stale = differences(files, arguments.output) if arguments.check else []
    except (TableError, OSError) as error:
        print(f"maketables: {error}", file=sys.stderr)
        return 1
    if arguments.check:
        for line in stale:
            print(f"maketables: {line}", file=sys.stderr)
        if stale:
            print(f"To repair: {shlex.join(word for word in sys.argv if word != '--check')}", file=sys.stderr)
        return 1 if stale else 0
    for name, text in files.items():
        (arguments.output / name).write_bytes(text.encode("ascii"))
    return 0


if __name__ == "__main__":
    sys.exit(main())
