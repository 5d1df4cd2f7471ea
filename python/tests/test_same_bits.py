"""The results are those of the C++ interface, bit for bit."""

import struct

import numpy as np
import pytest
from conftest import ROOT
from hypothesis import given, settings
from hypothesis import strategies as st
from hypothesis.extra import numpy as npst
from shapes import box, same_bits, sphere, triangles_of, with_attributes

import orva_acc

OPERATIONS = [
    orva_acc.union,
    lambda a, b: orva_acc.subtract(a, [b]),
    orva_acc.intersect,
    lambda base, *cutters: orva_acc.subtract(base, cutters),
    lambda base, *cutters: orva_acc.subtract(base, cutters, mode="union"),
    lambda base, *cutters: orva_acc.subtract(base, cutters, mode="parallel"),
]


def golden_cases():
    """tests/golden/README.md has the format."""
    data = (ROOT / "tests/golden/cases.bin").read_bytes()
    assert data[:8] == b"ORVAGLD1"
    at = 8

    def number():
        nonlocal at
        at += 4
        return struct.unpack_from("<I", data, at - 4)[0]

    def mesh():
        nonlocal at
        count = number()
        at += 64 * count
        whole = count - count % 3  # what is behind the last whole triangle has no form in an array of triangles
        return np.frombuffer(data, "<f8", whole * 8, at - 64 * count).reshape(-1, 3, 8)

    return [(number(), [mesh() for _ in range(number())], mesh()) for _ in range(number())]


def test_golden_results():
    cases = golden_cases()
    assert len(cases) == 344
    for index, (operation, inputs, result) in enumerate(cases):
        assert same_bits(OPERATIONS[operation](*inputs), result), index


def soups(corner_values):
    """Triangles of nothing in particular, with any values at all in what is only carried along."""
    return st.integers(0, 8).flatmap(
        lambda n: st.tuples(
            npst.arrays(np.float64, (n, 3, 3), elements=st.sampled_from(corner_values)),
            npst.arrays(np.float64, (n, 3, 5), elements=st.floats()),
        ).map(lambda parts: np.concatenate(parts, axis=2))
    )


corners = st.tuples(*[st.integers(-3, 3)] * 3)
boxes = st.tuples(corners, st.tuples(*[st.integers(1, 3)] * 3), st.sampled_from([1.0, 0.37, 1e-6, 1e3])).map(
    lambda t: with_attributes(triangles_of(*box(t[0], np.add(t[0], t[1]))) * t[2])
)
meshes = boxes | soups([0.0, -0.0, 0.5, 1.0, 1.0 + 1e-7, 2.0, np.nan])


@settings(max_examples=300)
@given(operation=st.integers(0, 2), a=meshes, b=meshes)
def test_two_random_meshes(reference, operation, a, b):
    assert same_bits(OPERATIONS[operation](a, b), reference(operation, a, b))


@settings(max_examples=100)
@given(operation=st.integers(3, 4), base=meshes, cutters=st.lists(meshes, min_size=1, max_size=5))
def test_random_cutters(reference, operation, base, cutters):
    assert same_bits(OPERATIONS[operation](base, *cutters), reference(operation, base, *cutters))


@pytest.mark.parametrize("operation", range(6))
def test_spheres(reference, operation):
    a = with_attributes(sphere(3))
    b = with_attributes(sphere(3, (0.31, 0.17, 0.23), 0.9))
    result = OPERATIONS[operation](a, b)
    assert len(result) > 1000
    assert same_bits(result, reference(operation, a, b))


@settings(max_examples=50)
@given(a=boxes, b=boxes)
def test_positions_alone_give_the_positions_of_the_same_result(reference, a, b):
    assert same_bits(orva_acc.union(a[..., :3], b[..., :3]), reference(0, a, b)[..., :3])
