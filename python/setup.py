"""Builds the extension with CMake.  It takes the build folder that GXSHAPE_BUILD names, where one is; else its own."""
import os
import shutil
import subprocess
import sys
from pathlib import Path

from setuptools import Extension, setup
from setuptools.command.build_ext import build_ext

HERE = Path(__file__).resolve().parent


class CMakeBuild(build_ext):
    """The target gxshape_python of the project one folder up."""

    def run(self) -> None:
        root = HERE.parent
        folder = Path(os.environ.get("GXSHAPE_BUILD") or root / "build" / "python")
        if not (folder / "CMakeCache.txt").is_file():
            generator = ["-G", "Ninja"] if shutil.which("ninja") else []
            subprocess.run(["cmake", "-S", root, "-B", folder, *generator, "-DCMAKE_BUILD_TYPE=Release",
                            "-DCMAKE_CXX_FLAGS_RELEASE=-O2 -DNDEBUG", "-DBUILD_SHARED_LIBS=OFF", "-DGXSHAPE_TESTS=OFF",
                            "-DGXSHAPE_EXAMPLES=OFF", "-DGXSHAPE_TOOL=OFF", "-DGXSHAPE_INSTALL=OFF",
                            "-DGXSHAPE_PYTHON_MODULE=ON", f"-DGXSHAPE_PYTHON3={sys.executable}"], check=True)
        subprocess.run(["cmake", "--build", folder, "--target", "gxshape_python", "--parallel",
                        str(os.cpu_count() or 1)], check=True)
        (built,) = (folder / "python" / "gxshape").glob("_gxshape*.so")
        target = Path(self.build_lib) / "gxshape"
        target.mkdir(parents=True, exist_ok=True)
        shutil.copy(built, target)
        shutil.copy(root / "docs" / "names.csv", target)


setup(ext_modules=[Extension("gxshape._gxshape", sources=[])], cmdclass={"build_ext": CMakeBuild})
