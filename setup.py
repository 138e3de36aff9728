"""Builds the package by CMake: the module, and the shared libraries beside it."""

import os
import pathlib
import subprocess
import sys

from setuptools import Extension, setup
from setuptools.command.build_ext import build_ext


class CMakeBuild(build_ext):
    def run(self):
        # A build folder that is there is used as it is configured, but for where things go.
        given = os.environ.get("QUILON_BUILD_DIR")
        build, out = pathlib.Path(given or self.build_temp).resolve(), pathlib.Path(self.build_lib).resolve()
        if self.inplace:
            out = pathlib.Path("python").resolve()
        parts = ["HOST", "TESTS", "BENCH", "EXAMPLES"]
        subprocess.run(
            ["cmake", "-S", ".", "-B", build, "-D", "QUILON_BUILD_PYTHON=ON", "-D", f"Python_EXECUTABLE={sys.executable}",
             "-D", "QUILON_PYTHON_DIR=.", "-D", "CMAKE_INSTALL_LIBDIR=quilon",
             *([] if given else ["-D", "CMAKE_BUILD_TYPE=Release"]),
             *(word for part in parts if not given for word in ("-D", f"QUILON_BUILD_{part}=OFF")),
             *os.environ.get("CMAKE_ARGS", "").split()],
            check=True,
        )  # fmt: skip
        subprocess.run(["cmake", "--build", build, "--parallel", "--target", "quilon_python"], check=True)
        for component in ("Runtime", "Python"):
            subprocess.run(["cmake", "--install", build, "--prefix", out, "--component", component], check=True)
        # A wheel keeps no links: each library once, under the name that it is loaded by.
        for link in sorted((out / "quilon").glob("*.so.*")):
            if link.is_symlink():
                library = link.resolve()
                link.unlink()
                library.rename(link)


setup(ext_modules=[Extension("quilon._native", [])], cmdclass={"build_ext": CMakeBuild})
