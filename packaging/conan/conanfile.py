"""Recipe for Conan 2, of the tree that it stands in: conan create packaging/conan"""

import re
from pathlib import Path

from conan import ConanFile
from conan.errors import ConanInvalidConfiguration
from conan.tools.build import check_min_cppstd
from conan.tools.cmake import CMake, CMakeToolchain, cmake_layout
from conan.tools.files import copy, load


class Vynulib64(ConanFile):
    name = "vynulib64"
    description = "Exact and fast text conversion between 41 character sets"
    package_type = "library"
    settings = "os", "arch", "compiler", "build_type"
    options = {"shared": [True, False], "fPIC": [True, False], "tools": [True, False]}
    default_options = {"shared": True, "fPIC": True, "tools": False}
    implements = ["auto_shared_fpic"]

    def _root(self):
        return Path(self.recipe_folder).parent.parent

    def set_version(self):
        header = load(self, self._root() / "include/vynulib/Version.h")
        self.version = ".".join(re.findall(r"^#define VYNULIB_VERSION_\w+ (\d+)$", header, re.MULTILINE))

    def export_sources(self):
        copy(self, "*", self._root(), self.export_sources_folder, excludes=("build/*", ".git*", "tests/*", "fuzz/*"))

    def validate(self):
        check_min_cppstd(self, 17)
        if self.settings.os != "Linux" or self.settings.arch not in ("x86_64", "armv8"):
            raise ConanInvalidConfiguration("built on Linux, x86-64 or AArch64, alone")

    def layout(self):
        cmake_layout(self)

    def generate(self):
        toolchain = CMakeToolchain(self)
        toolchain.cache_variables.update({
            "VYNULIB_BUILD_TESTS": "OFF",
            "VYNULIB_BUILD_EXAMPLES": "OFF",
            "VYNULIB_JAVA": "OFF",
            "VYNULIB_WARNINGS": "OFF",
            "VYNULIB_BUILD_TOOLS": "ON" if self.options.tools else "OFF",
        })
        toolchain.generate()

    def build(self):
        cmake = CMake(self)
        cmake.configure()
        cmake.build()

    def package(self):
        CMake(self).install()

    def package_info(self):
        self.cpp_info.libs = ["vynulib64"]
        self.cpp_info.set_property("cmake_target_name", "vynulib64::vynulib64")
        self.cpp_info.set_property("pkg_config_name", "vynulib64")
        if not self.options.shared:
            self.cpp_info.defines = ["VYNULIB_STATIC"]
            self.cpp_info.system_libs = ["dl", "pthread"]
