"""Reads the recipes of packages: check.py VERSION

They have to be well-formed, of the project's version, and name no option that the project does not have; the document of
the options names all of them.
"""

import ast
import json
import re
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent.parent


def read(name):
    return (ROOT / name).read_text()


def difference(what, found, expected):
    return [] if found == expected else [f"{what}: {found}, expected {expected}"]


def main(version):
    ast.parse(read("packaging/conan/conanfile.py"))
    faults = difference("vcpkg.json", json.loads(read("packaging/vcpkg/vynulib64/vcpkg.json"))["version"], version)
    faults += difference("debian/changelog", read("debian/changelog").split()[1], f"({version})")

    build = "".join(read(f) for f in ("CMakeLists.txt", "cmake/VynulibTests.cmake", "tests/tables/CMakeLists.txt"))
    options = set(re.findall(r"^ *(?:option\(|set\((?=.* CACHE ))(VYNULIB_\w+)", build, re.MULTILINE))
    for recipe in ("packaging/conan/conanfile.py", "packaging/vcpkg/vynulib64/portfile.cmake", "debian/rules"):
        named = set(re.findall(r"\bVYNULIB_(?:BUILD|INSTALL|JAVA|WARN|SANI)\w*", read(recipe)))
        faults += difference(f"{recipe}, unknown options", named - options, set())
    documented = set(re.findall(r"^\| `(VYNULIB_\w+)`", read("docs/building.md"), re.MULTILINE))
    faults += difference("docs/building.md, options that are missing or none", documented ^ options, set())
    return faults


if __name__ == "__main__":
    faults = main(sys.argv[1])
    print("\n".join(faults))
    sys.exit(bool(faults))
