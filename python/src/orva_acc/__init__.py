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

**Tidied results.** Where the first operand is ``(vertices, faces)``, the result is tidied: closed by index, every edge in exactly
two faces, with as few triangles as the shape needs. Where it is an array of triangles the result is the bare list of pieces, each
cut along whole planes, corners in the middle of neighbours' edges. ``tidy=True`` and ``tidy=False`` ask for either one, whatever
came in; `tidy` makes one of the other. `Report` says whether a result closed, and what was done for it: with
``return_report=True`` functions return ``(result, report)``. Nothing warns where a result did not close. A vertex of ``(v, 8)``
at which faces carry different normals or aux is there once for each: such a result is closed by the positions of its vertices.

Seen from outside, the corners of a triangle run counter-clockwise. Lengths are in the unit of your choice; 1e-6 of it is the
tolerance, so choose one in which parts are between about 1 and 1000 across (tidied results are computed in a unit that suits the
parts). Normals and aux are carried through, interpolated where a triangle is cut; where a surface is turned inside out the normals
are negated.

**What is assumed.** Each mesh is the whole boundary of a solid: closed, facing outward, not crossing itself. Nothing checks it.
Other meshes, and NaN and infinite coordinates, go through without an error and give what they give; an empty mesh empties every
result, a union's included.

**Numbers.** All is computed in double precision, and the same input gives the same bits at any time, on every platform, with any
number of threads. (`subtract` with ``mode="parallel"`` is the one exception.) Whatever double precision holds without loss is
taken: floats, integers up to 2**53, lists of them, in any byte order and memory order. A contiguous float64 array of shape
``(n, 3, 8)`` is read where it is; everything else is copied first.

**Memory.** Results are arrays of their own, which numpy releases. Inputs are neither changed nor kept.

**Errors.** They are the same for all functions, and nothing leaks:

========================  =============================================================================================
``TypeError``             values that are no real numbers (complex, bool, object, masked), faces that are no integers
``ValueError``            another shape than above, a number that double precision does not hold (an integer beyond 2**53,
                          say), a face that names a vertex that is not there, more than 2**31 - 1 corners in one mesh, an
                          option that is not valid, or one for tidying where nothing is tidied
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

from . import _meshes, _native, _tidy
from ._tidy import Report

__all__ = ["intersect", "subtract", "tidy", "union", "Merge", "Mesh", "Mode", "Report", "Triangles", "Welded"]
__version__ = importlib.metadata.version("orva_acc")

Triangles: TypeAlias = npt.NDArray[np.float64]
"""(n, 3, 3) or (n, 3, 8)"""

Welded: TypeAlias = tuple[npt.NDArray[np.float64], npt.NDArray[np.int64]]
"""(vertices, faces): (v, 3) or (v, 8), and (f, 3)"""

Mesh: TypeAlias = npt.ArrayLike | tuple[npt.ArrayLike, npt.ArrayLike]
"""What the functions take."""

Mode: TypeAlias = Literal["sequential", "union", "parallel"]
Merge: TypeAlias = Literal["none", "cut", "all"]

_MODES = {
    "sequential": _native.SUBTRACT_IN_TURN,
    "union": _native.SUBTRACT_UNION,
    "parallel": _native.SUBTRACT_UNION_PARALLEL,
}


def _form(form: _meshes.Form, welded: bool | None) -> _meshes.Form:
    return form if welded is None else _meshes.Form(bool(welded), form.full)


def _call(
    operation: int, base: Any, others: list[tuple[Any, str]], name: str, welded: bool | None, tidy: bool | None,
    options: _tidy.Options,
) -> Any:
    """`name` is that of the base; `others` are meshes with theirs."""
    first, form = _meshes.read(base, name)
    rest = [_meshes.read(mesh, of)[0] for mesh, of in others]
    wants_tidy = form.indexed if tidy is None else tidy
    if wants_tidy:
        return _tidy.call(operation, [first, *rest], _form(form, welded), options)
    options.refuse()
    return _meshes.write(_native.call(operation, first, rest), _form(form, welded))


@overload
def union(
    a: Mesh, b: Mesh, *, welded: Literal[True], tidy: bool | None = ..., tolerance: float = ..., close_gaps: float = ...,
    merge: Merge = ..., scale: bool = ..., return_report: Literal[False] = ...,
) -> Welded: ...
@overload
def union(
    a: Mesh, b: Mesh, *, welded: Literal[False], tidy: bool | None = ..., tolerance: float = ..., close_gaps: float = ...,
    merge: Merge = ..., scale: bool = ..., return_report: Literal[False] = ...,
) -> Triangles: ...
@overload
def union(
    a: Mesh, b: Mesh, *, welded: bool | None = ..., tidy: bool | None = ..., tolerance: float = ...,
    close_gaps: float = ..., merge: Merge = ..., scale: bool = ..., return_report: Literal[False] = ...,
) -> Any: ...
@overload
def union(
    a: Mesh, b: Mesh, *, welded: bool | None = ..., tidy: bool | None = ..., tolerance: float = ...,
    close_gaps: float = ..., merge: Merge = ..., scale: bool = ..., return_report: Literal[True],
) -> tuple[Any, Report]: ...
def union(
    a: Mesh, b: Mesh, *, welded: bool | None = None, tidy: bool | None = None, tolerance: float = 0.0, close_gaps: float = 0.0,
    merge: Merge = "cut", scale: bool = True, return_report: bool = False,
) -> Any:
    """What lies in a, in b, or in both.

    Parameters
    ----------
    a, b : array_like of shape (n, 3, 3) or (n, 3, 8), or tuple (vertices, faces)
        Closed meshes; see the module for the forms, for what is assumed and for the errors. Faces that touch with opposite
        outsides vanish; faces that coincide and face the same way appear once.
    welded : bool, optional
        True for a result of (vertices, faces), False for one of triangles; the default is the form of `a`.
    tidy : bool, optional
        Whether the result is tidied; by default where `a` is (vertices, faces). The keywords below are for tidied results alone.
    tolerance : float, optional
        How far apart things may be that should be one, in the unit that is computed in; 0, the default, for one that suits the
        size.
    close_gaps : float, optional
        Up to which width gaps are closed that are wider than the tolerance. By default none is.
    merge : {"cut", "none", "all"}, optional
        Which coplanar neighbours become one face, to be divided into as few triangles as its outline needs: faces that were cut,
        none but the pieces of one face of an operand, or all faces. Only faces of one operand whose normals and aux run on
        linearly are ever merged.
    scale : bool, optional
        Whether to compute in a unit that suits the sizes of the meshes, which loses no bit of them.
    return_report : bool, optional
        True for a tuple of the result and its `Report`.

    Returns
    -------
    ndarray of shape (m, 3, 3) or (m, 3, 8), or tuple of ndarrays (vertices, faces)
        float64 and int64, in the form of `a`, owned by the caller. Not tidied, corners that are equal in all of their values share
        a vertex; in the order of their first use.

    Notes
    -----
    Swapped operands give the same solid, possibly cut into other triangles. Where triangles of a are not cut, they arrive bit for
    bit (welded, 0.0 may stand for -0.0).
    """
    options = _tidy.Options(tolerance, close_gaps, merge, scale, return_report)
    return _call(_native.UNION, a, [(b, "b")], "a", welded, tidy, options)


@overload
def intersect(
    a: Mesh, b: Mesh, *, welded: Literal[True], tidy: bool | None = ..., tolerance: float = ..., close_gaps: float = ...,
    merge: Merge = ..., scale: bool = ..., return_report: Literal[False] = ...,
) -> Welded: ...
@overload
def intersect(
    a: Mesh, b: Mesh, *, welded: Literal[False], tidy: bool | None = ..., tolerance: float = ..., close_gaps: float = ...,
    merge: Merge = ..., scale: bool = ..., return_report: Literal[False] = ...,
) -> Triangles: ...
@overload
def intersect(
    a: Mesh, b: Mesh, *, welded: bool | None = ..., tidy: bool | None = ..., tolerance: float = ...,
    close_gaps: float = ..., merge: Merge = ..., scale: bool = ..., return_report: Literal[False] = ...,
) -> Any: ...
@overload
def intersect(
    a: Mesh, b: Mesh, *, welded: bool | None = ..., tidy: bool | None = ..., tolerance: float = ...,
    close_gaps: float = ..., merge: Merge = ..., scale: bool = ..., return_report: Literal[True],
) -> tuple[Any, Report]: ...
def intersect(
    a: Mesh, b: Mesh, *, welded: bool | None = None, tidy: bool | None = None, tolerance: float = 0.0, close_gaps: float = 0.0,
    merge: Merge = "cut", scale: bool = True, return_report: bool = False,
) -> Any:
    """What lies in both a and b; parameters, result and notes as for `union`."""
    options = _tidy.Options(tolerance, close_gaps, merge, scale, return_report)
    return _call(_native.INTERSECT, a, [(b, "b")], "a", welded, tidy, options)


@overload
def subtract(
    base: Mesh, cutters: Iterable[Mesh], mode: Mode = ..., *, welded: Literal[True], tidy: bool | None = ...,
    tolerance: float = ..., close_gaps: float = ..., merge: Merge = ..., scale: bool = ...,
    return_report: Literal[False] = ...,
) -> Welded: ...
@overload
def subtract(
    base: Mesh, cutters: Iterable[Mesh], mode: Mode = ..., *, welded: Literal[False], tidy: bool | None = ...,
    tolerance: float = ..., close_gaps: float = ..., merge: Merge = ..., scale: bool = ...,
    return_report: Literal[False] = ...,
) -> Triangles: ...
@overload
def subtract(
    base: Mesh, cutters: Iterable[Mesh], mode: Mode = ..., *, welded: bool | None = ..., tidy: bool | None = ...,
    tolerance: float = ..., close_gaps: float = ..., merge: Merge = ..., scale: bool = ...,
    return_report: Literal[False] = ...,
) -> Any: ...
@overload
def subtract(
    base: Mesh, cutters: Iterable[Mesh], mode: Mode = ..., *, welded: bool | None = ..., tidy: bool | None = ...,
    tolerance: float = ..., close_gaps: float = ..., merge: Merge = ..., scale: bool = ..., return_report: Literal[True],
) -> tuple[Any, Report]: ...
def subtract(
    base: Mesh, cutters: Iterable[Mesh], mode: Mode = "sequential", *, welded: bool | None = None, tidy: bool | None = None,
    tolerance: float = 0.0, close_gaps: float = 0.0, merge: Merge = "cut", scale: bool = True, return_report: bool = False,
) -> Any:
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
    tidy : bool, optional
        Whether the result is tidied; by default where `base` is (vertices, faces).
    tolerance, close_gaps, merge, scale, return_report : optional
        How it is tidied, as for `union`.

    Returns
    -------
    ndarray of shape (m, 3, 3) or (m, 3, 8), or tuple of ndarrays (vertices, faces)
        float64 and int64, in the form of `base`, owned by the caller. The walls that a cutter leaves are its triangles turned
        around: corners in reverse order, normals negated, aux as it was.

    Raises
    ------
    ValueError
        Also for another mode, and where there are no cutters: keep the base then.
    """
    try:
        operation = _MODES[mode]
    except (KeyError, TypeError):
        raise ValueError(f'mode is "sequential", "union" or "parallel", not {mode!r}') from None
    if isinstance(cutters, np.ndarray) and cutters.ndim == 3:
        raise ValueError("cutters: a list of meshes is needed; a single mesh goes into a list, too")
    options = _tidy.Options(tolerance, close_gaps, merge, scale, return_report)
    others = [(cutter, f"cutters[{index}]") for index, cutter in enumerate(cutters)]
    if not others:
        raise ValueError("cutters: none. Nothing is cut then: keep the base")
    return _call(operation, base, others, "base", welded, tidy, options)


@overload
def tidy(
    mesh: Mesh, *, welded: Literal[True] = ..., tolerance: float = ..., close_gaps: float = ..., merge: Merge = ...,
    return_report: Literal[False] = ...,
) -> Welded: ...
@overload
def tidy(
    mesh: Mesh, *, welded: Literal[False], tolerance: float = ..., close_gaps: float = ..., merge: Merge = ...,
    return_report: Literal[False] = ...,
) -> Triangles: ...
@overload
def tidy(
    mesh: Mesh, *, welded: bool = ..., tolerance: float = ..., close_gaps: float = ..., merge: Merge = ...,
    return_report: Literal[True],
) -> tuple[Any, Report]: ...
def tidy(
    mesh: Mesh, *, welded: bool = True, tolerance: float = 0.0, close_gaps: float = 0.0, merge: Merge = "cut",
    return_report: bool = False,
) -> Any:
    """The mesh closed by index, with few triangles, whoever made it.

    Coplanar pieces that hang together are taken for pieces of one face: corners in the middle of their edges go, those that are
    apart by no more than the tolerance become one. What is open stays open, unless `close_gaps` says up to which width.

    Parameters
    ----------
    mesh : array_like of shape (n, 3, 3) or (n, 3, 8), or tuple (vertices, faces)
        See the module for the forms and for the errors.
    welded : bool, optional
        False for a result of triangles.
    tolerance, close_gaps, merge, return_report : optional
        As for `union`.

    Returns
    -------
    tuple of ndarrays (vertices, faces), or ndarray of shape (m, 3, 3) or (m, 3, 8)
        float64 and int64, owned by the caller.
    """
    vertices, form = _meshes.read(mesh, "mesh")
    options = _tidy.Options(tolerance, close_gaps, merge, return_report=return_report)
    return _tidy.call(_native.TIDY, [vertices], _form(form, welded), options)
