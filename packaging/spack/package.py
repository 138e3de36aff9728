"""Spack: copy to packages/quilondbdatatools of a repository and fill in the source. Not run in CI."""

from spack.package import *


class Quilondbdatatools(CMakePackage):
    """Data tools for finite-element results, with a database on disk and the program quilon."""

    url = "SOURCE/quilon-0.1.0.tar.gz"

    version("0.1.0", sha256="SOURCE")

    variant("program", default=True, description="Build the program quilon")
    variant("python", default=False, description="Build the Python package")

    depends_on("cxx", type="build")
    depends_on("cmake@3.25:", type="build")
    depends_on("xxhash@0.8:", type="build")
    depends_on("pkgconfig", type="build")
    for program_library in ("cli11@2.1:", "hdf5@1.10:~mpi", "nanoflann@1.4:", "nlohmann-json@3.11:", "cairo@1.16:+pdf+svg", "zlib-api"):
        depends_on(program_library, when="+program")
    depends_on("python@3.9:", when="+python", type=("build", "run"))
    depends_on("py-pybind11@2.10:", when="+python", type="build")
    depends_on("py-numpy", when="+python", type=("build", "run"))

    conflicts("%gcc@:11", msg="C++20: GCC 12 or later")
    conflicts("%clang@:13", msg="C++20: Clang 14 or later")
    conflicts("+python", when="~program", msg="the Python package needs what the program is made of")

    def cmake_args(self):
        return [
            self.define_from_variant("QUILON_BUILD_HOST", "program"),
            self.define_from_variant("QUILON_BUILD_PYTHON", "python"),
            self.define("QUILON_BUILD_TESTS", self.run_tests),
            self.define("QUILON_BUILD_BENCH", False),
            self.define("QUILON_BUILD_EXAMPLES", False),
        ]
