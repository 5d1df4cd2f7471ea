import pathlib
import struct
import subprocess

import numpy as np
import pytest
from hypothesis import HealthCheck, settings

# No times asserted, no folder left behind; what fails is printed so that it can be repeated.
settings.register_profile(
    "orva", deadline=None, database=None, print_blob=True, suppress_health_check=[HealthCheck.function_scoped_fixture]
)
settings.load_profile("orva")

ROOT = pathlib.Path(__file__).resolve().parents[2]


class Reference:
    """The C++ interface, asked through a program (reference.cpp)."""

    def __init__(self):
        self.program = subprocess.Popen(
            [ROOT / "build/linux/bin/python_reference"], stdin=subprocess.PIPE, stdout=subprocess.PIPE
        )

    def __call__(self, operation, *meshes):
        request = [struct.pack("=II", operation, len(meshes))]
        for mesh in meshes:
            vertices = np.ascontiguousarray(mesh, float).reshape(-1, 8)
            request += [struct.pack("=I", len(vertices)), vertices.tobytes()]
        self.program.stdin.write(b"".join(request))
        self.program.stdin.flush()
        (count,) = struct.unpack("=I", self.program.stdout.read(4))
        return np.frombuffer(self.program.stdout.read(count * 64)).reshape(-1, 3, 8)

    def close(self):
        self.program.stdin.close()
        self.program.stdout.close()
        assert self.program.wait() == 0


@pytest.fixture(scope="session")
def reference():
    reference = Reference()
    yield reference
    reference.close()
