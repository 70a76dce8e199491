"""The package as CMake installs it, and as a wheel: it runs, with the libraries that came with it, of the best level."""
import glob
import os
import shutil
import subprocess
import sys
import zipfile

import kesl

source = os.path.join(os.path.dirname(__file__), "../../python")
tree, work = os.environ["KESL_TREE"], os.environ["KESL_WORK"]


def runs(directory, libraries):
    """The package in a directory, moved to another place, with nothing but that in the search path."""
    environment = {"PYTHONPATH": directory, "PATH": os.environ["PATH"]}
    command = [sys.executable, "-B", "-m", "kesl", "--test"]
    printed = subprocess.run(command, cwd="/", env=environment, check=True, stdout=subprocess.PIPE, text=True).stdout
    version, file, tested = printed.splitlines()
    assert version.startswith(f"kesl {kesl.__version__} for {kesl.level},") and tested.endswith("all agree")
    assert os.path.realpath(file).startswith(os.path.realpath(libraries) + "/")


def test_installed():
    (package,) = glob.glob(tree + "/lib/python3*/dist-packages/kesl")
    assert {"py.typed", "__init__.pyi", "__main__.py"} <= set(os.listdir(package))
    runs(os.path.dirname(package), tree + "/lib")


def test_wheel():
    shutil.rmtree(work, ignore_errors=True)
    shutil.copytree(source, work + "/source") # which setuptools writes to
    (pkg_config,) = glob.glob(tree + "/lib*/**/pkgconfig", recursive=True)
    options = "--quiet --no-build-isolation --no-deps --no-index --disable-pip-version-check".split()
    command = [sys.executable, "-m", "pip", "wheel", *options, "--wheel-dir", work, work + "/source"]
    subprocess.run(command, check=True, env=os.environ | {"PKG_CONFIG_PATH": pkg_config})
    (wheel,) = glob.glob(work + "/kesl-*.whl")
    with zipfile.ZipFile(wheel) as archive:
        assert not any(name.startswith("build") for name in archive.namelist())
        archive.extractall(work + "/wheel")
    runs(work + "/wheel", work + "/wheel/kesl/lib")
