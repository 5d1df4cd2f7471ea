#!/usr/bin/env python3
"""Makes the pictures of these pages, with the program: `docs/pictures.py [ORVA]`, after a change that shows.

ORVA is the program, build/linux/bin/orva unless another one is named. The meshes are made here, and go to build/pictures; the
pictures are committed, so that the pages can be built, and the README read, without building the program.
"""

import math
import pathlib
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
PICTURES = ROOT / "docs" / "pictures"
MESHES = ROOT / "build" / "pictures"
ORVA = sys.argv[1] if len(sys.argv) > 1 else str(ROOT / "build" / "linux" / "bin" / "orva")


# ---- meshes, as OFF ----

def save(name, corners, faces):
    path = MESHES / f"{name}.off"
    lines = ["OFF", f"{len(corners)} {len(faces)} 0"]
    lines += [" ".join(repr(float(value)) for value in corner) for corner in corners]
    lines += [" ".join(str(index) for index in (len(face), *face)) for face in faces]
    path.write_text("\n".join(lines) + "\n", encoding="ascii")
    return path


def box(name, low, high, lid=True):
    corners = [[(low, high)[number >> axis & 1][axis] for axis in range(3)] for number in range(8)]
    faces = [(0, 2, 3, 1), (0, 1, 5, 4), (2, 6, 7, 3), (0, 4, 6, 2), (1, 3, 7, 5), (4, 5, 7, 6)]
    return save(name, corners, faces if lid else faces[:-1])


def ball(name, middle, radius, rings=40, steps=72):
    corners = [[middle[0], middle[1], middle[2] - radius]]
    for ring in range(1, rings):
        a = math.pi * ring / rings
        for step in range(steps):
            b = math.tau * step / steps
            corners.append([middle[0] + radius * math.sin(a) * math.cos(b),
                            middle[1] + radius * math.sin(a) * math.sin(b), middle[2] - radius * math.cos(a)])
    corners.append([middle[0], middle[1], middle[2] + radius])
    last = len(corners) - 1

    def at(ring, step):
        return 1 + (ring - 1) * steps + step % steps

    faces = []
    for step in range(steps):
        faces.append((0, at(1, step + 1), at(1, step)))
        faces.append((at(rings - 1, step), at(rings - 1, step + 1), last))
        for ring in range(1, rings - 1):
            low = at(ring, step), at(ring, step + 1)
            high = at(ring + 1, step + 1), at(ring + 1, step)
            faces += [(*low, high[0]), (low[0], *high)]
    return save(name, corners, faces)


def rod(name, axis, reach, radius, steps=96):
    """A cylinder about an axis through the origin."""
    corners = []
    for end in (-reach, reach):
        for step in range(steps):
            a = math.tau * step / steps
            corner = [0.0, 0.0, 0.0]
            corner[axis] = end
            corner[(axis + 1) % 3] = radius * math.cos(a)
            corner[(axis + 2) % 3] = radius * math.sin(a)
            corners.append(corner)
    faces = [tuple(reversed(range(steps))), tuple(range(steps, 2 * steps))]
    for step in range(steps):
        after = (step + 1) % steps
        faces.append((step, after, steps + after, steps + step))
    return save(name, corners, faces)


# ---- the program ----

def orva(*arguments):
    subprocess.run([ORVA, *map(str, arguments), "--force", "--quiet"], check=True)


def combine(verb, name, *inputs, tidied=False):
    path = MESHES / f"{name}.off"
    options = ["--mode", "union"] if verb == "subtract" else []
    if not tidied:
        options.append("--raw")  # most pages explain what the library itself gives
    orva(verb, *inputs, "-o", path, *options)
    return path


def render(name, *inputs, size="640x480", view="iso", edges="feature", colors=None):
    options = ["--colors", colors] if colors else []
    orva("render", *inputs, "-o", PICTURES / f"{name}.png", "--size", size, "--view", view, "--edges", edges,
         "--background", "transparent", *options)


# ---- the pictures ----

def main():
    PICTURES.mkdir(exist_ok=True)
    MESHES.mkdir(parents=True, exist_ok=True)

    # all operations in one part
    cube = box("cube", (-1, -1, -1), (1, 1, 1))
    globe = ball("globe", (0, 0, 0), 1.33)
    rods = [rod(f"rod-{axis}", axis, 1.5, 0.6) for axis in range(3)]
    rounded = combine("intersect", "rounded", cube, globe)
    render("part", combine("subtract", "part", rounded, *rods), size="720x600", view="30,28")

    # the operations, one by one
    block = box("block", (-1, -1, -0.6), (1, 1, 0.6))
    sphere = ball("sphere", (0.75, -0.75, 0.5), 0.85)
    render("operands", block, sphere, size="480x400")
    for verb in ("union", "subtract", "intersect"):
        render(verb, combine(verb, verb, block, sphere), size="480x400")

    # one base, many cutters
    wall = box("wall", (0, 0, 0), (15, 0.3, 12))
    windows = [box(f"window-{floor}-{bay}", (bay + 0.2, -0.1, 3 * floor + 1), (bay + 0.8, 0.4, 3 * floor + 2.4))
               for floor in range(4) for bay in range(15)]
    house = combine("subtract", "house", wall, *windows)
    render("wall", house, size="720x560", view="28,14")

    # the same as it is cut, and as it is tidied
    render("wall-raw", house, size="720x580", view="front", edges="all")
    render("wall-tidied", combine("subtract", "house-tidied", wall, *windows, tidied=True), size="720x580", view="front",
           edges="all")

    # why results hold more triangles than their shape needs
    small = box("small", (0, 0, 0), (4, 0.3, 3))
    window = box("window", (1.2, -1, 1), (2.4, 1, 2.1))
    render("cuts-before", small, size="480x380", view="front", edges="all")
    render("cuts-after", combine("subtract", "cuts", small, window), size="480x380", view="front", edges="all")

    # open input: a box without a lid, on its own and with a corner cut off
    tray = box("tray", (-1, -1, -0.6), (1, 1, 0.6), lid=False)
    render("open", tray, size="480x400")
    corner = box("corner", (0.2, -1.4, -0.1), (1.4, -0.2, 1))
    render("open-cut", combine("subtract", "open", tray, corner), size="480x400")


main()
