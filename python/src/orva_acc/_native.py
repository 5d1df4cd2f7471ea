"""The libraries, called through ctypes.

What is called is not the libraries' C interface itself but ``orva_acc_guarded`` beside it, which returns a code where the library
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

UNION, SUBTRACT, INTERSECT, SUBTRACT_IN_TURN, SUBTRACT_UNION, SUBTRACT_UNION_PARALLEL, TIDY = range(7)
_NO_MEMORY, _TOO_LONG = 1, 2  # of orva_guarded_call
_OUT_OF_MEMORY, _TOO_LARGE, _BAD_ARGUMENT, _FAILED = 2, 3, 4, 5  # of orva_guarded_tidy


class _Mesh(ctypes.Structure):
    _fields_ = [("count", ctypes.c_int32), ("vertices", ctypes.POINTER(ctypes.c_double))]


class _Solid(ctypes.Structure):
    _fields_ = [
        ("vertex_count", ctypes.c_int32),
        ("face_count", ctypes.c_int32),
        ("vertices", ctypes.POINTER(ctypes.c_double)),
        ("faces", ctypes.POINTER(ctypes.c_uint32)),
        ("corners", ctypes.POINTER(ctypes.c_double)),
        ("origins", ctypes.c_void_p),
    ]


class Options(ctypes.Structure):
    """What to tidy with; merge is 0, 1 or 2."""

    _fields_ = [
        ("tolerance", ctypes.c_double),
        ("gap_width", ctypes.c_double),
        ("merge", ctypes.c_int32),
        ("scale", ctypes.c_int32),
    ]


class Figures(ctypes.Structure):
    """The library's report."""

    _fields_ = [
        ("closed", ctypes.c_int32),
        ("padding", ctypes.c_int32),
        ("open_edges", ctypes.c_uint64),
        ("largest_gap", ctypes.c_double),
        ("loops_removed", ctypes.c_uint64),
        ("loop_area", ctypes.c_double),
        ("moved_by_weld", ctypes.c_double),
        ("moved_by_zip", ctypes.c_double),
        ("moved_by_drop", ctypes.c_double),
        ("forced_ears", ctypes.c_uint64),
        ("faces_left", ctypes.c_uint64),
        ("soup_triangles", ctypes.c_uint64),
        ("pieces", ctypes.c_uint64),
        ("scale", ctypes.c_double),
    ]


def _load() -> ctypes.CDLL:
    name = "orva_acc_guarded.dll" if sys.platform == "win32" else "liborva_acc_guarded.so"
    # By its whole path: Windows then looks for the other DLLs in the same folder, too.
    library = ctypes.CDLL(str(pathlib.Path(__file__).resolve().parent / "lib" / name))
    mesh = ctypes.POINTER(_Mesh)
    library.orva_guarded_call.argtypes = [
        ctypes.c_int32, mesh, mesh, mesh, ctypes.c_int32, ctypes.c_char_p, ctypes.c_size_t
    ]
    library.orva_guarded_call.restype = ctypes.c_int32
    library.orva_guarded_free.argtypes = [ctypes.POINTER(ctypes.c_double)]
    library.orva_guarded_free.restype = None
    library.orva_guarded_tidy.argtypes = [
        ctypes.c_int32, ctypes.POINTER(_Solid), ctypes.POINTER(Figures), mesh, ctypes.c_int32, ctypes.POINTER(Options)
    ]
    library.orva_guarded_tidy.restype = ctypes.c_int32
    library.orva_guarded_tidy_free.argtypes = [ctypes.POINTER(_Solid)]
    library.orva_guarded_tidy_free.restype = None
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


def _begin(operation: int) -> int:
    """What is really called: in a forked process no worker thread would come."""
    global _used
    if operation == SUBTRACT_UNION_PARALLEL and _forked:
        operation = SUBTRACT_UNION
    _used = True
    return operation


def call(operation: int, base: Vertices, others: Sequence[Vertices]) -> Vertices:
    """The result of the operation, in memory of its own. The arrays are read where they are and not kept."""
    operation = _begin(operation)
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


def tidied(
    operation: int, meshes: Sequence[Vertices], options: Options
) -> tuple[npt.NDArray[np.float64], npt.NDArray[np.int64], npt.NDArray[np.float64], Figures]:
    """The tidied result of the operation on the meshes, the first of which is the base, as vertices (v, 3), faces (f, 3) and what
    their corners carry, (3 f, 5); in memory of its own. The arrays are read where they are and not kept."""
    operation = _begin(operation)
    output, figures = _Solid(), Figures()
    records = (_Mesh * len(meshes))(*map(_view, meshes))
    try:
        status = _library.orva_guarded_tidy(operation, output, figures, records, len(records), options)
        if status == _OUT_OF_MEMORY:
            raise MemoryError("bad allocation")
        if status == _TOO_LARGE:
            raise OverflowError("vector too long")
        if status in (_BAD_ARGUMENT, _FAILED):
            raise RuntimeError("the task scheduler failed" if status == _FAILED else "an argument that the library does not take")
        if output.face_count == 0:
            return np.empty((0, 3)), np.empty((0, 3), np.int64), np.empty((0, 5)), figures
        return (
            np.ctypeslib.as_array(output.vertices, (output.vertex_count, 3)).copy(),
            np.ctypeslib.as_array(output.faces, (output.face_count, 3)).astype(np.int64),
            np.ctypeslib.as_array(output.corners, (3 * output.face_count, 5)).copy(),
            figures,
        )
    finally:
        _library.orva_guarded_tidy_free(output)
