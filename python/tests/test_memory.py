"""Memory: given back once, also where it runs out."""

import ctypes
import subprocess
import sys

from shapes import sphere, with_attributes

import orva_acc


class Usage(ctypes.Structure):
    """What mallinfo2 of the C library answers."""

    _fields_ = [(name, ctypes.c_size_t) for name in
                "arena ordblks smblks hblks hblkhd usmblks fsmblks uordblks fordblks keepcost".split()]


def bytes_in_use():
    """On the process heap, where results and numpy's arrays are."""
    mallinfo2 = ctypes.CDLL(None).mallinfo2
    mallinfo2.restype = Usage
    usage = mallinfo2()
    return usage.uordblks + usage.hblkhd


def test_repeated_calls_do_not_grow():
    mesh = with_attributes(sphere(3))
    moved = mesh + (0.31, 0.17, 0.23, 0, 0, 0, 0, 0)
    size = orva_acc.union(mesh, moved).nbytes
    orva_acc.union(mesh, moved, tidy=True)
    assert size > 250_000
    before = bytes_in_use()
    for _ in range(20):
        orva_acc.union(mesh, moved)
        orva_acc.subtract(mesh, [moved, mesh], mode="union", welded=True)
        orva_acc.subtract(mesh, [moved], tidy=True, welded=True)
    assert abs(bytes_in_use() - before) < size


LIMITED = """
import pathlib, resource
import numpy as np
import orva_acc
from shapes import same_bits, sphere, with_attributes
from test_memory import bytes_in_use

def limit_to(more):
    pages = int(pathlib.Path("/proc/self/statm").read_text().split()[0])
    resource.setrlimit(resource.RLIMIT_AS, (pages * resource.getpagesize() + more, resource.RLIM_INFINITY))

a, b = (with_attributes(sphere(4, centre)) for centre in ((0, 0, 0), (0.31, 0.17, 0.23)))
orva_acc.union(a, b)  # the scheduler has set itself up, and its threads have come
before = bytes_in_use()
texts = []
result = None
while result is None:
    limit_to((8 << 20) * len(texts))
    try:
        result = orva_acc.union(a, b)
    except MemoryError as error:
        texts.append(str(error))
    limit_to(100 << 30)
assert "bad allocation" in texts, texts
assert same_bits(result, orva_acc.union(a, b)) and len(result) > 5000
assert abs(bytes_in_use() - before - result.nbytes) < 1_000_000, bytes_in_use() - before - result.nbytes
print(len(texts), "calls failed")
"""


def test_running_out_of_memory_is_an_exception():
    run = subprocess.run([sys.executable, "-c", LIMITED], cwd=__file__.rpartition("/")[0], capture_output=True, text=True)
    assert run.returncode == 0, run.stderr
    assert run.stdout.endswith("calls failed\n")
