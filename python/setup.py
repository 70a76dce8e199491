"""The wheel: the extension, built against the kesl that pkg-config finds, with that library in all its levels."""
import glob
import os
import shutil
import subprocess

import numpy
from setuptools import Extension, setup
from setuptools.command.build_ext import build_ext


def pkg_config(*arguments):
    return subprocess.run(["pkg-config", *arguments, "kesl"], check=True, stdout=subprocess.PIPE, text=True).stdout.strip()


class WithLibraries(build_ext):
    def run(self):
        super().run()
        source = pkg_config("--variable=libdir")
        target = os.path.join(os.path.dirname(self.get_ext_fullpath("kesl._ufuncs")), "lib")
        for name in ("libkesl.so.1", "libkeslcorex64.so.6.1", "glibc-hwcaps/*/libkesl.so.1"): # where each finds the other
            for file in glob.glob(os.path.join(source, name)):
                copy = os.path.join(target, os.path.relpath(file, source))
                os.makedirs(os.path.dirname(copy), exist_ok=True)
                shutil.copyfile(file, copy)


libdir = pkg_config("--variable=libdir")
setup(
    version=pkg_config("--modversion"),
    packages=["kesl"],
    package_data={"kesl": ["*.pyi", "py.typed"]},
    cmdclass={"build_ext": WithLibraries},
    ext_modules=[Extension(
        "kesl._ufuncs", ["ufuncs.cpp"], depends=glob.glob("*.h"),
        include_dirs=[numpy.get_include(), pkg_config("--variable=includedir")], library_dirs=[libdir],
        libraries=["kesl", "keslcorex64"], runtime_library_dirs=["$ORIGIN/lib"],
        extra_compile_args=["-std=c++20", "-O2", "-fvisibility=hidden"])],
)
