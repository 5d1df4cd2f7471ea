#!/usr/bin/env python3
"""Draws the figures of what-it-computes.md into docs/figures: `docs/figures.py`, after a change to it.

In the plane instead of in space, so that all of it can be seen: solids are areas, their faces edges, planes are lines. What is drawn
is computed, by the algorithm that the page describes; only where things stand on the paper is chosen by hand. The colours are
of middling brightness, so that they are readable on light and on dark paper.
"""

import math
import pathlib

TOLERANCE = 1e-9  # of this drawing
GREY, BLUE, ORANGE, RED = "#7d8590", "#3f7fc0", "#d0702f", "#d0433f"


# ---- edges and trees ----

class Line:
    """The points p with normal . p = w; the front is where the normal points: outside, right of an edge."""

    def __init__(self, a, b):
        dx, dy = b[0] - a[0], b[1] - a[1]
        length = math.hypot(dx, dy)
        self.normal = (dy / length, -dx / length)
        self.w = self.normal[0] * a[0] + self.normal[1] * a[1]

    def distance(self, p):
        return self.normal[0] * p[0] + self.normal[1] * p[1] - self.w


class Edge:
    def __init__(self, a, b, name="", line=None):
        self.a, self.b, self.name = a, b, name
        self.line = line or Line(a, b)  # a piece keeps the line of the whole


def edges(corners):
    """Of an outline whose corners run counter-clockwise."""
    return [Edge(a, b, str(i + 1)) for i, (a, b) in enumerate(zip(corners, corners[1:] + corners[:1]))]


def divide(line, edge):
    """What of the edge lies in front of the line, behind it, and in it."""
    da, db = line.distance(edge.a), line.distance(edge.b)
    if abs(da) <= TOLERANCE and abs(db) <= TOLERANCE:
        return None, None, edge
    if da >= -TOLERANCE and db >= -TOLERANCE:
        return edge, None, None
    if da <= TOLERANCE and db <= TOLERANCE:
        return None, edge, None
    t = da / (da - db)
    cut = (edge.a[0] + t * (edge.b[0] - edge.a[0]), edge.a[1] + t * (edge.b[1] - edge.a[1]))
    first, second = Edge(edge.a, cut, edge.name, edge.line), Edge(cut, edge.b, edge.name, edge.line)
    return (first, second, None) if da > 0 else (second, first, None)


class Node:
    """A node takes the line of the first edge that reaches it."""

    def __init__(self, arriving):
        self.line, self.name = arriving[0].line, arriving[0].name
        front, back = [], []
        for edge in arriving[1:]:
            before, behind, _ = divide(self.line, edge)
            front += [before] if before else []
            back += [behind] if behind else []
        self.front = Node(front) if front else None
        self.back = Node(back) if back else None


def clip(node, edge):
    """The pieces of the edge that fall out of the tree in front: what lies outside."""
    before, behind, within = divide(node.line, edge)
    if within:  # goes with the side that it faces
        along = node.line.normal[0] * edge.line.normal[0] + node.line.normal[1] * edge.line.normal[1]
        before, behind = (within, None) if along > 0 else (None, within)
    kept = []
    if before:
        kept += clip(node.front, before) if node.front else [before]
    if behind and node.back:
        kept += clip(node.back, behind)
    return kept


def cell_half(line, cell, front):
    """The part of a convex area on one side of a line."""
    sign = 1 if front else -1
    result = []
    for a, b in zip(cell, cell[1:] + cell[:1]):
        da, db = sign * line.distance(a), sign * line.distance(b)
        if da >= -TOLERANCE:
            result.append(a)
        if (da > TOLERANCE and db < -TOLERANCE) or (da < -TOLERANCE and db > TOLERANCE):
            t = da / (da - db)
            result.append((a[0] + t * (b[0] - a[0]), a[1] + t * (b[1] - a[1])))
    return result


# ---- drawing ----

class Drawing:
    def __init__(self, width, height, title):
        self.size, self.parts = (width, height), []
        self.title = title
        self.origin, self.scale = (0, 0), 1

    def place(self, x, y, scale):
        """What follows has its origin here, y upward."""
        self.origin, self.scale = (x, y), scale

    def at(self, p):
        return self.origin[0] + self.scale * p[0], self.origin[1] - self.scale * p[1]

    def line(self, a, b, colour, width=2.0, dashed=False):
        (x1, y1), (x2, y2) = self.at(a), self.at(b)
        dashes = ' stroke-dasharray="5 4"' if dashed else ""
        self.parts.append(f'<line x1="{x1:.1f}" y1="{y1:.1f}" x2="{x2:.1f}" y2="{y2:.1f}" stroke="{colour}" '
                          f'stroke-width="{width}"{dashes}/>')

    def area(self, corners, colour, opacity=0.22):
        points = " ".join("{:.1f},{:.1f}".format(*self.at(p)) for p in corners)
        self.parts.append(f'<polygon points="{points}" fill="{colour}" fill-opacity="{opacity}"/>')

    def dot(self, p, colour, radius=3.5):
        x, y = self.at(p)
        self.parts.append(f'<circle cx="{x:.1f}" cy="{y:.1f}" r="{radius}" fill="{colour}"/>')

    def ring(self, p, colour, radius):
        x, y = self.at(p)
        self.parts.append(f'<circle cx="{x:.1f}" cy="{y:.1f}" r="{radius}" fill="none" stroke="{colour}" stroke-width="2"/>')

    def text(self, p, words, colour=GREY, size=15, anchor="middle", bold=False):
        x, y = self.at(p)
        weight = ' font-weight="bold"' if bold else ""
        self.parts.append(f'<text x="{x:.1f}" y="{y + size * 0.35:.1f}" fill="{colour}" font-size="{size}" '
                          f'text-anchor="{anchor}"{weight}>{words}</text>')

    def write(self, name):
        width, height = self.size
        body = "\n".join(self.parts)
        pathlib.Path(__file__).with_name("figures").joinpath(name).write_text(
            f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {width} {height}" width="{width}" height="{height}" '
            f'font-family="sans-serif" role="img">\n<title>{self.title}</title>\n{body}\n</svg>\n', encoding="utf-8")


# ---- the figures ----

def draw_lines(drawing, node, cell):
    """Each line of the tree as far as its part of the plane goes."""
    ends = [p for p in cell_half(node.line, cell, True) if abs(node.line.distance(p)) < 1e-6]
    if len(ends) >= 2:
        drawing.line(ends[0], ends[-1], GREY, 1.2, dashed=True)
    if node.front:
        draw_lines(drawing, node.front, cell_half(node.line, cell, True))
    if node.back:
        draw_lines(drawing, node.back, cell_half(node.line, cell, False))


def tree_figure():
    drawing = Drawing(560, 350, "An L-shaped solid, the lines that divide the plane along its edges, and the tree of them")
    corners = [(0, 0), (4, 0), (4, 2), (2, 2), (2, 4), (0, 4)]
    root = Node(edges(corners))

    # left: the solid, and what its lines divide
    drawing.place(50, 265, 42)
    drawing.area(corners, BLUE)
    draw_lines(drawing, root, [(-1, -1), (5, -1), (5, 5), (-1, 5)])
    for edge in edges(corners):
        drawing.line(edge.a, edge.b, BLUE, 3.5)
        middle = ((edge.a[0] + edge.b[0]) / 2, (edge.a[1] + edge.b[1]) / 2 + (0.4 if edge.name == "6" else 0))
        drawing.text((middle[0] + 0.3 * edge.line.normal[0], middle[1] + 0.3 * edge.line.normal[1]), edge.name, bold=True)
    drawing.dot((0, 2), RED, 4.5)
    drawing.text((0.15, 2.25), "cut", RED, anchor="start")

    # right: the tree
    drawing.place(335, 30, 1)
    across, down = 52, 52

    def draw(node, x, y):
        for child, side, leaf in ((node.front, -1, "out"), (node.back, 1, "in")):
            near = 0.6 if child is None else 1  # leaves close by, so that there is room for branches
            dx, dy = side * across * near, -down * near
            length = math.hypot(dx, dy)
            start, stop = 16 / length, 1 - (13 if child is None else 16) / length
            drawing.line((x + dx * start, y + dy * start), (x + dx * stop, y + dy * stop), GREY, 1.5)
            if child is None:
                drawing.text((x + dx, y + dy), leaf, BLUE if leaf == "in" else GREY)
            else:
                draw(child, x + dx, y + dy)
        drawing.ring((x, y), BLUE, 15)
        drawing.text((x, y), node.name, bold=True)

    draw(root, 0, 0)
    drawing.text((220, 2), "front to the left,", anchor="end")
    drawing.text((220, -18), "back to the right", anchor="end")
    drawing.write("tree.svg")


def clipping_figure():
    drawing = Drawing(480, 420, "Two solids; each clipped by the other; and the union")
    corners_a = [(0, 0), (4, 0), (4, 3), (0, 3)]
    corners_b = [(2.6, 1.2), (5.4, 0.7), (6.0, 2.6), (3.6, 4.2)]
    frame = [(-0.4, -0.6), (6.4, -0.6), (6.4, 4.6), (-0.4, 4.6)]
    a, b = edges(corners_a), edges(corners_b)
    tree_a, tree_b = Node(a), Node(b)

    def draw_pieces(shape, tree, colour):
        for edge in shape:
            for piece in clip(tree, edge):
                drawing.line(piece.a, piece.b, colour, 3.5)
                drawing.dot(piece.a, colour)
                drawing.dot(piece.b, colour)

    for panel, title in enumerate(["a and b", "a, clipped by b", "b, clipped by a", "together: the union"]):
        drawing.place(25 + 240 * (panel % 2), 155 + 215 * (panel // 2), 31)
        drawing.text((3, -1.1), title)
        if panel == 0:
            drawing.area(corners_a, BLUE)
            drawing.area(corners_b, ORANGE)
            for edge in a:
                drawing.line(edge.a, edge.b, BLUE, 3)
            for edge in b:
                drawing.line(edge.a, edge.b, ORANGE, 3)
        if panel == 1:
            drawing.area(corners_b, ORANGE, 0.15)
            draw_lines(drawing, tree_b, frame)
        if panel == 2:
            drawing.area(corners_a, BLUE, 0.15)
            draw_lines(drawing, tree_a, frame)
        if panel in (1, 3):
            draw_pieces(a, tree_b, BLUE)
        if panel in (2, 3):
            draw_pieces(b, tree_a, ORANGE)
    drawing.write("clipping.svg")


def tolerance_figure():
    drawing = Drawing(560, 290, "A plane has a thickness: what lies within the tolerance of it lies in it")
    drawing.place(10, 145, 1)
    drawing.area([(0, -22), (540, -22), (540, 22), (0, 22)], GREY, 0.2)
    drawing.line((0, 0), (540, 0), GREY, 1.2, dashed=True)
    drawing.text((3, 34), "1e-6 in front", anchor="start")
    drawing.text((3, -35), "1e-6 behind", anchor="start")
    cases = [
        ((140, 100), (190, 12), BLUE, ["front"], 165),
        ((260, 100), (320, -80), RED, ["on both sides:", "cut at the plane"], 290),
        ((370, 14), (445, -12), BLUE, ["in the plane"], 407),
        ((470, -90), (530, -16), BLUE, ["back"], 500),
    ]
    for p, q, colour, words, x in cases:
        drawing.line(p, q, colour, 3)
        drawing.dot(p, colour, 4.5)
        drawing.dot(q, colour, 4.5)
        for row, line in enumerate(words):
            drawing.text((x, -108 - 20 * row), line)
    drawing.ring((260 + 60 * 100 / 180, 0), RED, 7)
    drawing.write("tolerance.svg")


tree_figure()
clipping_figure()
tolerance_figure()
