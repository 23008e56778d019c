#!/usr/bin/env python3
"""Runs what a document tells to type, in its order, in a folder of its own with the installed library:
run-commands.py DOCUMENT source-directory installed-prefix work-directory cmake c++-compiler

A sample in CMake that is a project becomes CMakeLists.txt there and is built. The commands of sh run with a few
stand-ins: what would start the suite again or change the machine only has to be there. /usr/local means a link to the
installed prefix: pkg-config's answer is split at blanks, which a folder of ours may have.
"""
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

document, source, prefix, work, cmake, compiler = sys.argv[1:]
STAND_INS = r"""
sudo() { "$@"; }
ldconfig() { [[ -e $PREFIX/lib/libvynulib64.so ]]; }
g++() { command "$COMPILER" "$@"; }
cmake() {
    case "$*" in
        "--preset "*) (cd "$SOURCE" && command "$CMAKE" --list-presets=all | grep -F "\"$2\"") ;;
        "--build --preset "*) cmake --preset "$3" ;;
        "--install build/release "*) [[ -e $PREFIX/include/vynulib/vynulib.h ]] ;;
        *) command "$CMAKE" "$@" ;;
    esac
}
java() { [[ ! -e $PREFIX/share/java/vynxfer.jar ]] || command java "$@"; }
"""
RUN = """#!/bin/sh
[ $# -gt 0 ] || set -- -f KOI8R -t UTF8 letter.txt
exec "$PREFIX/bin/vynconv" "$@"
"""


def prepare():
    shutil.rmtree(work, ignore_errors=True)
    os.makedirs(work + "/scripts")
    for name, sample in (("letter.txt", "koi8r"), ("a", "utf8"), ("b", "utf8")):
        shutil.copy(f"{source}/examples/samples/letter.{sample}.txt", f"{work}/{name}")
    shutil.copy(source + "/examples/pieces.cpp", work)
    for script in pathlib.Path(source, "scripts").iterdir():
        stand_in = pathlib.Path(work, "scripts", script.name)
        stand_in.write_text(RUN if script.name == "run" else "#!/bin/sh\n")
        stand_in.chmod(script.stat().st_mode)


def run(commands, prefix):
    environment = dict(os.environ, SOURCE=source, PREFIX=prefix, CMAKE=cmake, COMPILER=compiler,
                       PKG_CONFIG_PATH=prefix + "/lib/pkgconfig", LD_LIBRARY_PATH=prefix + "/lib",
                       PATH=f"{prefix}/bin:{os.environ['PATH']}")
    commands = commands.replace("/usr/local", prefix)
    print(commands, flush=True)
    subprocess.run(["bash", "-euo", "pipefail", "-c", STAND_INS + commands], cwd=work, env=environment, check=True)


prepare()
blocks = re.findall(r"^```(sh|cmake)\n(.*?)^```$", pathlib.Path(document).read_text(), re.MULTILINE | re.DOTALL)
if not blocks:
    sys.exit(document + " has no commands")
with tempfile.TemporaryDirectory() as links:
    os.symlink(prefix, links + "/prefix")
    for language, text in blocks:
        if language == "cmake" and "project(" not in text:
            continue  # a part of one, as the embedding tests build it
        if language == "cmake":
            pathlib.Path(work, "CMakeLists.txt").write_text(text)
            text = 'cmake -B sample "-DCMAKE_CXX_COMPILER=$COMPILER" "-DCMAKE_PREFIX_PATH=$PREFIX"; cmake --build sample'
        run(text, links + "/prefix")
