"""`pip install .` in this folder: builds the compiled part, and puts the driver and tanksim beside it.

Takes what script/setup --python installs; asks no registry when it is called as
`pip install --no-build-isolation --no-deps .`.
"""

import re
import shutil
import subprocess
import sys
from pathlib import Path

from setuptools import Extension, setup
from setuptools.command.build_ext import build_ext

ROOT = Path(__file__).resolve().parent.parent
VERSION = re.search(r"project\(Gantry VERSION ([0-9.]+)", (ROOT / "CMakeLists.txt").read_text())[1]


class BuildByCMake(build_ext):
    def build_extension(self, ext: Extension) -> None:
        build = ROOT / "build" / "python"  # kept, as the other builds are
        package = Path(self.get_ext_fullpath(ext.name)).resolve().parent
        own = [f"-DPython_EXECUTABLE={sys.executable}", "-DGANTRY_TESTS=OFF", "-DGANTRY_BENCH=OFF"]
        subprocess.run(["cmake", "--preset", "release", "-B", build, *own], cwd=ROOT, check=True)
        subprocess.run(["cmake", "--build", build, "--target", "gantry_native"], check=True)
        package.mkdir(parents=True, exist_ok=True)
        for built in ("python/gantry/_native*.so", "lib/libIntersect.so", "lib/libInflowCalc.so", "bin/tanksim"):
            (file,) = build.glob(built)
            shutil.copy2(file, package)
            subprocess.run(["strip", "--strip-debug", package / file.name], check=True)


setup(version=VERSION, ext_modules=[Extension("gantry._native", [])], cmdclass={"build_ext": BuildByCMake})
