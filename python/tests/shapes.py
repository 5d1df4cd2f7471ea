"""Meshes to test with, and comparison by bits."""

import numpy as np


def box(low, high):
    """The box between two corners as (vertices, faces)."""
    vertices = np.array([[(low, high)[i >> axis & 1][axis] for axis in range(3)] for i in range(8)], float)
    faces = [[0, 2, 1], [1, 2, 3], [4, 5, 6], [5, 7, 6], [0, 1, 4], [1, 5, 4],
             [2, 6, 3], [3, 6, 7], [0, 4, 2], [2, 4, 6], [1, 3, 5], [3, 7, 5]]
    return vertices, np.array(faces)


def sphere(level, centre=(0, 0, 0), radius=1.0):
    """20 * 4**level triangles as an array (n, 3, 3)."""
    golden = (1 + 5**0.5) / 2
    corners = np.array([p for a in (-1, 1) for b in (-golden, golden) for p in ((0, a, b), (a, b, 0), (b, 0, a))])
    triangles = np.array([
        (a, b, c) for i, a in enumerate(corners) for j, b in enumerate(corners) for k, c in enumerate(corners)
        if i < min(j, k) and np.linalg.det((a, b, c)) > 0.1
        and max(np.linalg.norm(a - b), np.linalg.norm(b - c), np.linalg.norm(c - a)) < 2.1
    ])
    for _ in range(level):
        a, b, c = triangles.swapaxes(0, 1)
        ab, bc, ca = (a + b) / 2, (b + c) / 2, (c + a) / 2
        triangles = np.concatenate([np.stack(t, 1) for t in ((a, ab, ca), (ab, b, bc), (ca, bc, c), (ab, bc, ca))])
    return triangles / np.linalg.norm(triangles, axis=2, keepdims=True) * radius + centre


def triangles_of(vertices, faces):
    return vertices[faces]


def with_attributes(triangles):
    """The same as (n, 3, 8): normals, and an aux that differs at every corner."""
    full = np.zeros((len(triangles), 3, 8))
    full[..., :3] = triangles
    normals = np.cross(triangles[:, 1] - triangles[:, 0], triangles[:, 2] - triangles[:, 0])
    full[..., 3:6] = normals[:, None] + 0.0  # not -0.0, which integers do not have
    full[..., 6:] = np.arange(len(triangles) * 6).reshape(-1, 3, 2)
    return full


def volume(triangles):
    a, b, c = np.asarray(triangles)[..., :3].swapaxes(0, 1)
    return np.einsum("ij,ij->", a, np.cross(b, c)) / 6


def same_bits(a, b):
    """Any NaN is any NaN; 0.0 is not -0.0."""
    if a.shape != b.shape:
        return False
    a, b = np.ascontiguousarray(a), np.ascontiguousarray(b)
    return bool(np.all((a.view(np.uint64) == b.view(np.uint64)) | (np.isnan(a) & np.isnan(b))))
