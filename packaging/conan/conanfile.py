# SPDX-FileCopyrightText: The libKelGeoLocation authors
# SPDX-License-Identifier: MIT

"""Builds the checkout in which it lies: conan create packaging/conan"""

import os

from conan import ConanFile
from conan.errors import ConanInvalidConfiguration
from conan.tools.build import check_min_cppstd
from conan.tools.cmake import CMake, CMakeDeps, CMakeToolchain, cmake_layout
from conan.tools.files import copy
from conan.tools.gnu import PkgConfigDeps


class KelGeoLocationRecipe(ConanFile):
    name = "kelgeolocation"
    version = "0.1.0"
    description = "Places and GPS tracks on maps, for Qt desktop applications"
    license = "MIT"
    topics = ("gps", "gpx", "kml", "maps", "qt")
    package_type = "shared-library"
    settings = "os", "arch", "compiler", "build_type"
    default_options = {
        "qt/*:shared": True,
        "qt/*:qtsvg": True,
        "qt/*:qttools": True,
        "qt/*:widgets": True,
    }

    def export_sources(self):
        root = os.path.join(self.recipe_folder, "..", "..")
        for pattern in ("CMakeLists.txt", "CHANGELOG.md", "LICENSE", "cmake/*", "libs/*", "plugins/*", "packaging/*"):
            copy(self, pattern, root, self.export_sources_folder)

    def requirements(self):
        # The headers show Qt types, so hosts need the very same Qt.
        self.requires("qt/[>=6.4 <7]", transitive_headers=True, transitive_libs=True)
        self.requires("libzip/[>=1.7 <2]")

    def build_requirements(self):
        self.tool_requires("qt/<host_version>")
        self.tool_requires("pkgconf/[>=1.9 <3]")

    def validate(self):
        check_min_cppstd(self, 20)
        if self.settings.os != "Linux":
            raise ConanInvalidConfiguration("kelgeolocation is made for Linux")

    def layout(self):
        cmake_layout(self)

    def generate(self):
        toolchain = CMakeToolchain(self)
        toolchain.variables["KEL_BUILD_APPS"] = False
        toolchain.variables["KEL_BUILD_TESTS"] = False
        toolchain.generate()
        CMakeDeps(self).generate()
        PkgConfigDeps(self).generate()

    def build(self):
        cmake = CMake(self)
        cmake.configure()
        cmake.build()

    def package(self):
        copy(self, "LICENSE", self.source_folder, os.path.join(self.package_folder, "licenses"))
        CMake(self).install()

    def package_info(self):
        # The project's own CMake package, which knows targets and components.
        self.cpp_info.set_property("cmake_find_mode", "none")
        self.cpp_info.builddirs.append(os.path.join("lib", "cmake", "KelGeoLocation"))
        self.cpp_info.libs = ["KelGeoLocation", "KelGUIWidgets", "KelXML", "KelCore"]
