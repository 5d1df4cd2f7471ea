"""What pyproject.toml cannot say: the version, and that a wheel is for one platform and for every Python. See scripts/wheel."""

import os

import setuptools
from wheel.bdist_wheel import bdist_wheel


class Distribution(setuptools.Distribution):
    def has_ext_modules(self):
        return True  # libraries for one platform, which makes the wheel one for that


class Wheel(bdist_wheel):
    def get_tag(self):
        return "py3", "none", os.environ["ORVA_WHEEL_PLATFORM"]  # loaded by ctypes: of any Python


setuptools.setup(version=os.environ["ORVA_VERSION"], distclass=Distribution, cmdclass={"bdist_wheel": Wheel})
