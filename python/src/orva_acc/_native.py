"""The library, called through ctypes.

What is called is not the library's C interface itself but ``orva_acc_guarded`` beside it, which returns a code where the library
throws: a C++ exception that came as far as the interpreter would end the process. ``ctypes.CDLL`` gives the GIL free during a call.
"""

from __future__ import annotations

import ctypes
import os
import pathlib
import sys
from collections.abc import Sequence

import numpy as np
import numpy.typing as npt

Vertices = npt.NDArray[np.float64]
"""(n, 8): position, normal, aux; three rows to a triangle; contiguous"""

UNION, SUBTRACT, INTERSECT, SUBTRACT_IN_TURN, SUBTRACT_UNION, SUBTRACT_UNION_PARALLEL = range(6)
_NO_MEMORY, _TOO_LONG = 1, 2


class _Mesh(ctypes.Structure):
    _fields_ = [("count", ctypes.c_int32), ("vertices", ctypes.POINTER(ctypes.c_double))]


def _load() -> ctypes.CDLL:
    name = "orva_acc_guarded.dll" if sys.platform == "win32" else "liborva_acc_guarded.so"
    # By its whole path: Windows then looks for the other two DLLs in the same folder, too.
    library = ctypes.CDLL(str(pathlib.Path(__file__).resolve().parent / "lib" / name))
    mesh = ctypes.POINTER(_Mesh)
    library.orva_guarded_call.argtypes = [
        ctypes.c_int32, mesh, mesh, mesh, ctypes.c_int32, ctypes.c_char_p, ctypes.c_size_t
    ]
    library.orva_guarded_call.restype = ctypes.c_int32
    library.orva_guarded_free.argtypes = [ctypes.POINTER(ctypes.c_double)]
    library.orva_guarded_free.restype = None
    return library


_library = _load()
_used = False  # in this process; from then on the scheduler may have threads
_forked = False  # since then: this process has the scheduler's memory, but none of its threads


def _after_fork() -> None:
    global _forked
    _forked = _used


if hasattr(os, "register_at_fork"):
    os.register_at_fork(after_in_child=_after_fork)


def _view(vertices: Vertices) -> _Mesh:
    return _Mesh(len(vertices), vertices.ctypes.data_as(ctypes.POINTER(ctypes.c_double)))


def call(operation: int, base: Vertices, others: Sequence[Vertices]) -> Vertices:
    """The result of the operation, in memory of its own. The arrays are read where they are and not kept."""
    global _used
    if operation == SUBTRACT_UNION_PARALLEL and _forked:
        operation = SUBTRACT_UNION  # no worker thread would come
    _used = True
    output = _Mesh()
    records = (_Mesh * len(others))(*map(_view, others))
    text = ctypes.create_string_buffer(256)
    try:
        # note: `output` is empty until the call has succeeded, and nothing but the line in `finally` releases what it holds.
        code = _library.orva_guarded_call(operation, output, _view(base), records, len(records), text, len(text))
        if code == _NO_MEMORY:
            raise MemoryError(text.value.decode())
        if code == _TOO_LONG:
            raise OverflowError(text.value.decode())
        if code != 0:
            raise RuntimeError(text.value.decode())
        if output.count == 0:
            return np.empty((0, 8))
        return np.ctypeslib.as_array(output.vertices, (output.count, 8)).copy()
    finally:
        _library.orva_guarded_free(output.vertices)
