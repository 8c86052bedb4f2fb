"""Untried: a recipe for Conan 2, written by its documentation, never run."""
from conan import ConanFile
from conan.tools.build import check_min_cppstd
from conan.tools.cmake import CMake, CMakeDeps, CMakeToolchain, cmake_layout


class Gxshape(ConanFile):
    name = "gxshape"
    version = "0.1.0"
    license = "Apache-2.0"
    description = "Planar shape geometry for machine vision"
    settings = "os", "arch", "compiler", "build_type"
    options = {"shared": [True, False], "fPIC": [True, False], "io": [True, False], "cairo": [True, False]}
    default_options = {"shared": False, "fPIC": True, "io": True, "cairo": False}
    exports_sources = ("CMakeLists.txt", "LICENSE", "NOTICE", "base/*", "cntr/*", "gauge/*", "ch_core/*", "overlay/*",
                       "include/*", "io/*", "cairo/*", "cmake/*", "tools/debugger/*", "docs/names.csv")

    def config_options(self):
        if self.settings.os == "Windows":
            del self.options.fPIC

    def requirements(self):
        if self.options.cairo:
            self.requires("cairo/[>=1.16]")

    def validate(self):
        check_min_cppstd(self, 20)

    def layout(self):
        cmake_layout(self)

    def generate(self):
        toolchain = CMakeToolchain(self)
        toolchain.cache_variables.update({
            "GXSHAPE_TESTS": False, "GXSHAPE_EXAMPLES": False, "GXSHAPE_WERROR": False, "GXSHAPE_TOOL": False,
            "GXSHAPE_IO": bool(self.options.io), "GXSHAPE_CAIRO": bool(self.options.cairo)})
        toolchain.generate()
        CMakeDeps(self).generate()

    def build(self):
        cmake = CMake(self)
        cmake.configure()
        cmake.build()

    def package(self):
        CMake(self).install()

    def package_info(self):
        self.cpp_info.set_property("cmake_file_name", "gxshape")
        include = ["include/gxshape-0.1"]
        for name, needs in (("velstd", []), ("velip", ["velstd"]), ("veldispc", ["velstd"]),
                            ("gxshape", ["velip", "veldispc"])):
            part = self.cpp_info.components[name]
            part.libs, part.requires, part.includedirs = [name], needs, include
            part.cxxflags = ["-ffp-contract=off"]
            part.set_property("cmake_target_name", f"gxshape::{name}")
        if self.options.io:
            part = self.cpp_info.components["gxshape_io"]
            part.libs, part.requires, part.includedirs = ["gxshape_io"], ["gxshape"], include
            part.set_property("cmake_target_name", "gxshape::gxshape_io")
        if self.options.cairo:
            part = self.cpp_info.components["gxshape_cairo"]
            part.libs, part.requires, part.includedirs = ["gxshape_cairo"], ["gxshape", "cairo::cairo"], include
            part.set_property("cmake_target_name", "gxshape::gxshape_cairo")
