"""Union, difference and intersection of closed triangle meshes.

    >>> import orva_acc
    >>> part = orva_acc.subtract(block, [drill, slot])

**Meshes.** Every function takes a mesh in any of these forms, and gives its result in the form of its first operand:

=======================  ==============================================================================================
``(n, 3, 3)``            an array of n triangles, three corners each, three coordinates each
``(n, 3, 8)``            the same with all that a corner carries: position, normal, and ``aux``, two values of your own
``(vertices, faces)``    a tuple of a ``(v, 3)`` or ``(v, 8)`` array and an ``(f, 3)`` array of indices into it
=======================  ==============================================================================================

Where forms are mixed, the first operand decides: a result without normals and aux leaves those of the other operands out, and one
with them has zeros where an operand had none. ``welded=True`` asks for ``(vertices, faces)`` whatever came in, ``welded=False``
for triangles.

Seen from outside, the corners of a triangle run counter-clockwise. Lengths are in the unit of your choice; 1e-6 of it is the
tolerance, so choose one in which parts are between about 1 and 1000 across. Normals and aux are carried through, interpolated where
a triangle is cut; where a surface is turned inside out the normals are negated.

**What is assumed.** Each mesh is the whole boundary of a solid: closed, facing outward, not crossing itself. Nothing checks it.
Other meshes, and NaN and infinite coordinates, go through without an error and give what they give; an empty mesh empties every
result, a union's included. A result holds more triangles than its shape needs, because triangles are cut by whole planes.

**Numbers.** All is computed in double precision, and the same input gives the same bits at any time, on every platform, with any
number of threads. (`subtract` with ``mode="parallel"`` is the one exception.) Whatever double precision holds without loss is
taken: floats, integers up to 2**53, lists of them, in any byte order and memory order. A contiguous float64 array of shape
``(n, 3, 8)`` is read where it is; everything else is copied first.

**Memory.** Results are arrays of their own, which numpy releases. Inputs are neither changed nor kept.

**Errors.** They are the same for all functions, and nothing leaks:

========================  =============================================================================================
``TypeError``             values that are no real numbers (complex, bool, object, masked), faces that are no integers
``ValueError``            another shape than above, a number that double precision does not hold (an integer beyond 2**53,
                          say), a face that names a vertex that is not there, more than 2**31 - 1 corners in one mesh
``MemoryError``           memory ran out
``OverflowError``         a list outgrew what the library can count: 2**31 corners of a result, for instance
``RuntimeError``          anything else that the library or its task scheduler throws
========================  =============================================================================================

``MemoryError`` needs some memory itself: on Linux, where nothing at all is left when a thread of the pool first takes part in a
call, the C library ends the process.

**Threads and processes.** Any number of calls at once; the GIL is free while the library computes, so nothing may write into the
arrays meanwhile. A call cannot be interrupted: Ctrl-C waits for its end. Each call shares its work with one pool of threads, as
many as there are processors. Start worker processes by "spawn" or "forkserver" rather than by "fork", which leaves the threads of
that pool behind in the parent.
"""

from __future__ import annotations

import importlib.metadata
from collections.abc import Iterable
from typing import Any, Literal, TypeAlias, overload

import numpy as np
import numpy.typing as npt

from . import _meshes, _native

__all__ = ["intersect", "subtract", "union", "Mesh", "Mode", "Triangles", "Welded"]
__version__ = importlib.metadata.version("orva_acc")

Triangles: TypeAlias = npt.NDArray[np.float64]
"""(n, 3, 3) or (n, 3, 8)"""

Welded: TypeAlias = tuple[npt.NDArray[np.float64], npt.NDArray[np.int64]]
"""(vertices, faces): (v, 3) or (v, 8), and (f, 3)"""

Mesh: TypeAlias = npt.ArrayLike | tuple[npt.ArrayLike, npt.ArrayLike]
"""What the functions take."""

Mode: TypeAlias = Literal["sequential", "union", "parallel"]

_MODES = {
    "sequential": _native.SUBTRACT_IN_TURN,
    "union": _native.SUBTRACT_UNION,
    "parallel": _native.SUBTRACT_UNION_PARALLEL,
}


def _form(form: _meshes.Form, welded: bool | None) -> _meshes.Form:
    return form if welded is None else _meshes.Form(bool(welded), form.full)


def _of_two(operation: int, a: Any, b: Any, welded: bool | None) -> Any:
    first, form = _meshes.read(a, "a")
    second, _ = _meshes.read(b, "b")
    return _meshes.write(_native.call(operation, first, [second]), _form(form, welded))


@overload
def union(a: Mesh, b: Mesh, *, welded: Literal[True]) -> Welded: ...
@overload
def union(a: Mesh, b: Mesh, *, welded: Literal[False]) -> Triangles: ...
@overload
def union(a: Mesh, b: Mesh, *, welded: bool | None = None) -> Any: ...
def union(a: Mesh, b: Mesh, *, welded: bool | None = None) -> Any:
    """What lies in a, in b, or in both.

    Parameters
    ----------
    a, b : array_like of shape (n, 3, 3) or (n, 3, 8), or tuple (vertices, faces)
        Closed meshes; see the module for the forms, for what is assumed and for the errors. Faces that touch with opposite
        outsides vanish; faces that coincide and face the same way appear once.
    welded : bool, optional
        True for a result of (vertices, faces), False for one of triangles; the default is the form of `a`.

    Returns
    -------
    ndarray of shape (m, 3, 3) or (m, 3, 8), or tuple of ndarrays (vertices, faces)
        float64, in the form of `a`, owned by the caller. Corners that are equal in all of their values share a vertex; in the
        order of their first use.

    Notes
    -----
    Swapped operands give the same solid, possibly cut into other triangles. Where triangles of a are not cut, they arrive bit for
    bit (welded, 0.0 may stand for -0.0).
    """
    return _of_two(_native.UNION, a, b, welded)


@overload
def intersect(a: Mesh, b: Mesh, *, welded: Literal[True]) -> Welded: ...
@overload
def intersect(a: Mesh, b: Mesh, *, welded: Literal[False]) -> Triangles: ...
@overload
def intersect(a: Mesh, b: Mesh, *, welded: bool | None = None) -> Any: ...
def intersect(a: Mesh, b: Mesh, *, welded: bool | None = None) -> Any:
    """What lies in both a and b; parameters, result and notes as for `union`."""
    return _of_two(_native.INTERSECT, a, b, welded)


@overload
def subtract(base: Mesh, cutters: Iterable[Mesh], mode: Mode = ..., *, welded: Literal[True]) -> Welded: ...
@overload
def subtract(base: Mesh, cutters: Iterable[Mesh], mode: Mode = ..., *, welded: Literal[False]) -> Triangles: ...
@overload
def subtract(base: Mesh, cutters: Iterable[Mesh], mode: Mode = ..., *, welded: bool | None = None) -> Any: ...
def subtract(base: Mesh, cutters: Iterable[Mesh], mode: Mode = "sequential", *, welded: bool | None = None) -> Any:
    """What lies in base but in none of the cutters.

    Parameters
    ----------
    base : array_like of shape (n, 3, 3) or (n, 3, 8), or tuple (vertices, faces)
        A closed mesh; see the module for the forms, for what is assumed and for the errors.
    cutters : iterable of such meshes
        At least one; a single cutter goes into a list, too. A cutter without triangles empties the result: leave such ones out.
    mode : {"sequential", "union", "parallel"}, optional
        How, not what: all three give the same solid, cut into triangles differently.

        - "sequential": one cutter after another, in order. The simplest; for a few cutters.
        - "union": first the union of all cutters, then one difference. For many cutters, or a detailed base.
        - "parallel": the same with unions merged side by side on all processors. For cutters that are large each and overlap. From
          three cutters on the surface can be cut differently from call to call. **When memory runs out inside a merge, the call
          never returns**; the other two raise MemoryError. Where the task scheduler has no thread besides the caller's (one
          processor, or a process made by "fork" after a first call), the unions are merged as in "union".
    welded : bool, optional
        True for a result of (vertices, faces), False for one of triangles; the default is the form of `base`.

    Returns
    -------
    ndarray of shape (m, 3, 3) or (m, 3, 8), or tuple of ndarrays (vertices, faces)
        float64, in the form of `base`, owned by the caller. The walls that a cutter leaves are its triangles turned around:
        corners in reverse order, normals negated, aux as it was.

    Raises
    ------
    ValueError
        Also for another mode, and where there are no cutters: keep the base then.
    """
    try:
        operation = _MODES[mode]
    except (KeyError, TypeError):
        raise ValueError(f'mode is "sequential", "union" or "parallel", not {mode!r}') from None
    first, form = _meshes.read(base, "base")
    if isinstance(cutters, np.ndarray) and cutters.ndim == 3:
        raise ValueError("cutters: a list of meshes is needed; a single mesh goes into a list, too")
    others = [_meshes.read(cutter, f"cutters[{index}]")[0] for index, cutter in enumerate(cutters)]
    if not others:
        raise ValueError("cutters: none. Nothing is cut then: keep the base")
    return _meshes.write(_native.call(operation, first, others), _form(form, welded))
