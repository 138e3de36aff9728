"""Conan 2: conan create packaging/conan --version 0.1.0. Not run in CI. Exports the tree that it stands in."""

import os

from conan import ConanFile
from conan.tools.cmake import CMake, CMakeDeps, CMakeToolchain, cmake_layout
from conan.tools.files import copy


class QuilonDbDataTools(ConanFile):
    name = "quilondbdatatools"
    description = "Data tools for finite-element results, with a database on disk and the program quilon"
    topics = ("finite-elements", "results", "post-processing")
    settings = "os", "compiler", "build_type", "arch"
    options = {"program": [True, False]}
    default_options = {"program": False}
    package_type = "shared-library"

    def export_sources(self):
        root = os.path.join(self.recipe_folder, os.pardir, os.pardir)
        for folder in ("cmake", "contract", "docs", "examples", "host", "include", "packaging", "siblings", "src"):
            copy(self, f"{folder}/*", root, self.export_sources_folder)
        for name in ("CMakeLists.txt", "LICENSE", "README.md", "CHANGELOG.md"):
            copy(self, name, root, self.export_sources_folder)

    def requirements(self):
        # The bundled siblings need a header to be built; the library itself needs nothing.
        self.requires("xxhash/[>=0.8 <1]", visible=False)
        if self.options.program:
            self.requires("hdf5/[>=1.10 <2]")
            self.requires("cli11/[>=2.1 <3]")
            self.requires("nanoflann/[>=1.4 <2]")
            self.requires("nlohmann_json/[>=3.11 <4]")
            self.requires("cairo/[>=1.16 <2]")
            self.requires("zlib/[>=1.2 <2]")

    def layout(self):
        cmake_layout(self)

    def generate(self):
        CMakeDeps(self).generate()
        toolchain = CMakeToolchain(self)
        for part in ("TESTS", "BENCH", "EXAMPLES"):
            toolchain.cache_variables[f"QUILON_BUILD_{part}"] = False
        toolchain.cache_variables["QUILON_BUILD_HOST"] = bool(self.options.program)
        toolchain.generate()

    def build(self):
        cmake = CMake(self)
        cmake.configure()
        cmake.build()

    def package(self):
        CMake(self).install()

    def package_info(self):
        # The package brings its own CMake files: find_package(Quilon).
        self.cpp_info.set_property("cmake_find_mode", "none")
        self.cpp_info.builddirs = ["lib/cmake/Quilon"]
