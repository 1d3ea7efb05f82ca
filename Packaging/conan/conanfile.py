"""Conan 2 recipe of this source tree: conan create Packaging/conan --build=missing"""

import os
import re

from conan import ConanFile
from conan.errors import ConanInvalidConfiguration
from conan.tools.cmake import CMake, CMakeToolchain, cmake_layout
from conan.tools.files import copy, load, rm, rmdir


class ZmMathConan(ConanFile):
    name = "zmmath"
    license = "MIT"
    description = "3D mathematics and system services for real-time engines"
    topics = ("math", "simd", "3d", "game-engine")
    package_type = "library"
    settings = "os", "arch", "compiler", "build_type"
    options = {"shared": [True, False]}
    default_options = {"shared": True}

    _root = os.path.join("..", "..")

    def set_version(self):
        header = load(self, os.path.join(self.recipe_folder, self._root, "Include", "ZmVersion.h"))
        self.version = ".".join(re.findall(r"#define ZMMATH_VERSION_[A-Z]+ (\d+)$", header, re.MULTILINE))

    def export_sources(self):
        root = os.path.join(self.recipe_folder, self._root)
        for part in ("CMakeLists.txt", "LICENSE", "README.md", "CHANGELOG.md", "CMake/*", "Include/*", "Sources/*", "Tools/*",
                     "Debuggers/*", "Documentation/*", "Examples/*"):
            copy(self, part, root, self.export_sources_folder)

    def validate(self):
        if self.settings.arch not in ("x86", "x86_64"):
            raise ConanInvalidConfiguration("ZmMath needs an x86 processor")
        if self.settings.compiler not in ("gcc", "clang"):
            raise ConanInvalidConfiguration("ZmMath needs g++ or clang++")

    def layout(self):
        cmake_layout(self)

    def generate(self):
        toolchain = CMakeToolchain(self)
        for part in ("TESTS", "EXAMPLES", "TOOLS"):
            toolchain.cache_variables[f"ZMMATH_{part}"] = False
        toolchain.generate()

    def build(self):
        cmake = CMake(self)
        cmake.configure()
        cmake.build()

    def package(self):
        copy(self, "LICENSE", self.source_folder, os.path.join(self.package_folder, "licenses"))
        CMake(self).install()
        rmdir(self, os.path.join(self.package_folder, "lib", "cmake"))
        rmdir(self, os.path.join(self.package_folder, "lib", "pkgconfig"))
        # The linker takes the only one of the two that is left.
        for other in ["libZmMath.a"] if self.options.shared else ["libZmMath.so*", "libZmMath.dll.a", "ZmMath.dll"]:
            rm(self, other, self.package_folder, recursive=True)

    def package_info(self):
        self.cpp_info.set_property("cmake_file_name", "ZmMath")
        self.cpp_info.set_property("cmake_target_name", "ZmMath::ZmMath" if self.options.shared else "ZmMath::Static")
        self.cpp_info.set_property("pkg_config_name", "zmmath")
        self.cpp_info.includedirs = [os.path.join("include", "ZmMath")]
        self.cpp_info.libs = ["ZmMath"]
        if not self.options.shared:
            start = "_ZmStartLibrary" if self.settings.os == "Windows" and self.settings.arch == "x86" else "ZmStartLibrary"
            self.cpp_info.defines = ["ZMMATH_STATIC_OBJECTS"]
            self.cpp_info.exelinkflags = self.cpp_info.sharedlinkflags = [f"-Wl,-u,{start}"]
            self.cpp_info.system_libs = ["ntdll"] if self.settings.os == "Windows" else ["pthread"]
