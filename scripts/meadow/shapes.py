"""Low-poly shapes of the meadow's goblins: points, faces with texture coordinates, and how they are lit."""

import math

from . import ground


class Shape:
    """`faces` hold (point, uv) index pairs, counter-clockwise seen from outside."""

    def __init__(self):
        self.points, self.uvs, self.faces = [], [], []
        self.crease = 40.0       # an edge is hard where its faces differ by more degrees
        self.normals = None      # one for each face corner, in face order; None: from the faces
        self.colours = None      # one for each point

    def add(self, points, uvs, faces):
        base, uv_base = len(self.points), len(self.uvs)
        self.points += [tuple(p) for p in points]
        self.uvs += uvs
        self.faces += [[(v + base, t + uv_base) for v, t in face] for face in faces]
        return self

    def extend(self, other, move=(0, 0, 0)):
        return self.add([tuple(a + b for a, b in zip(p, move)) for p in other.points], other.uvs, other.faces)

    def face_normal(self, face):
        n = [0.0, 0.0, 0.0]
        corners = [self.points[v] for v, _ in face]
        for (ax, ay, az), (bx, by, bz) in zip(corners, corners[1:] + corners[:1]):
            n[0] += (ay - by) * (az + bz)
            n[1] += (az - bz) * (ax + bx)
            n[2] += (ax - bx) * (ay + by)
        length = math.sqrt(sum(c * c for c in n)) or 1.0
        return tuple(c / length for c in n)


def lathe(profile, sides, wobble=lambda angle, y: 1.0):
    """Turns (radius, height) pairs, bottom first, about the y axis; an end that is not a point gets a cap."""
    shape, rings = Shape(), []
    points, uvs, faces = [], [], []
    lengths = [0.0]
    for (r0, y0), (r1, y1) in zip(profile, profile[1:]):
        lengths.append(lengths[-1] + math.hypot(r1 - r0, y1 - y0))
    for (radius, y), length in zip(profile, lengths):
        ring = []
        for k in range(1 if radius == 0 else sides):
            angle = 2 * math.pi * k / sides
            r = radius * wobble(angle, y)
            ring.append(len(points))
            points.append((r * math.sin(angle), y, r * math.cos(angle)))
        rings.append(ring)
        uvs += [(k / sides, length / lengths[-1]) for k in range(sides + 1)]
    for i, (low, high) in enumerate(zip(rings, rings[1:])):
        row = i * (sides + 1)
        for k in range(sides):
            a, b, c, d = row + k, row + k + 1, row + sides + 2 + k, row + sides + 1 + k
            n = (k + 1) % sides
            face = [(low[k % len(low)], a), (low[n % len(low)], b), (high[n % len(high)], c), (high[k % len(high)], d)]
            if len(low) == 1:
                del face[1]
            if len(high) == 1:
                del face[2]
            faces.append(face)
    for ring, upward in ((rings[0], False), (rings[-1], True)):
        if len(ring) > 1:
            first = len(uvs)
            uvs += [(0.5 + 0.5 * math.sin(2 * math.pi * k / sides), 0.5 - 0.5 * math.cos(2 * math.pi * k / sides))
                    for k in range(sides)]
            cap = [(v, first + k) for k, v in enumerate(ring)]
            faces.append(cap if upward else cap[::-1])
    return shape.add(points, uvs, faces)


def box(width, height, depth, peak=0.0):
    """Stands on y = 0; a peak makes a pyramid of the top."""
    x, z = width / 2, depth / 2
    points = [(sx * x, y, sz * z) for y in (0, height) for sx, sz in ((-1, 1), (1, 1), (1, -1), (-1, -1))]
    uvs = [(k / 4, v) for v in (0.0, 0.8) for k in range(5)] + [(0.0, 0.8), (1.0, 0.8), (1.0, 1.0), (0.0, 1.0)]
    faces = [[(k, k), ((k + 1) % 4, k + 1), (4 + (k + 1) % 4, k + 6), (4 + k, k + 5)] for k in range(4)]
    faces.append([(3, 13), (2, 12), (1, 11), (0, 10)])
    if peak:
        points.append((0, height + peak, 0))
        uvs.append((0.5, 0.9))
        faces += [[(4 + k, 10), (4 + (k + 1) % 4, 11), (8, 14)] for k in range(4)]
    else:
        faces.append([(4, 10), (5, 11), (6, 12), (7, 13)])
    shape = Shape().add(points, uvs, faces)
    shape.crease = 20.0
    return shape


def rock(seed):
    """An icosahedron, its faces divided once, knocked about; every edge is hard."""
    g = (1 + math.sqrt(5)) / 2
    points = [(-1, g, 0), (1, g, 0), (-1, -g, 0), (1, -g, 0), (0, -1, g), (0, 1, g),
              (0, -1, -g), (0, 1, -g), (g, 0, -1), (g, 0, 1), (-g, 0, -1), (-g, 0, 1)]
    triangles = [(0, 11, 5), (0, 5, 1), (0, 1, 7), (0, 7, 10), (0, 10, 11), (1, 5, 9), (5, 11, 4), (11, 10, 2),
                 (10, 7, 6), (7, 1, 8), (3, 9, 4), (3, 4, 2), (3, 2, 6), (3, 6, 8), (3, 8, 9), (4, 9, 5),
                 (2, 4, 11), (6, 2, 10), (8, 6, 7), (9, 8, 1)]
    middles = {}

    def middle(a, b):
        key = (min(a, b), max(a, b))
        if key not in middles:
            middles[key] = len(points)
            points.append(tuple((p + q) / 2 for p, q in zip(points[a], points[b])))
        return middles[key]

    divided = []
    for a, b, c in triangles:
        ab, bc, ca = middle(a, b), middle(b, c), middle(c, a)
        divided += [(a, ab, ca), (b, bc, ab), (c, ca, bc), (ab, bc, ca)]
    shaped, uvs = [], []
    for x, y, z in points:
        length = math.sqrt(x * x + y * y + z * z)
        r = 0.62 + 0.5 * ground.fractal(x * 1.3 + 9 * seed, z * 1.3 + y, 2, seed)
        x, y, z = x / length * r, y / length * r * 0.72, z / length * r * 0.85
        uvs.append((0.5 + math.atan2(x, z) / (2 * math.pi), 0.5 + 0.5 * y))
        shaped.append((x, max(y, -0.3) + 0.2, z))
    shape = Shape().add(shaped, uvs, [[(v, v) for v in t] for t in divided])
    shape.crease = 0.0
    return shape


def stump():
    roots = lambda angle, y: 1 + (0.16 * math.cos(5 * angle) if y < 0.2 else 0.0)
    return lathe([(0.8, -0.1), (0.52, 0.16), (0.42, 0.6), (0.45, 0.85), (0.36, 0.87)], 10, roots)


def mushroom():
    stem = lathe([(0.16, -0.05), (0.1, 0.2), (0.11, 0.5)], 6)
    cap = lathe([(0.1, 0.42), (0.42, 0.4), (0.4, 0.52), (0.24, 0.68), (0, 0.74)], 10)
    return stem.extend(cap)


def toadstool():
    """A mushroom whose colours are painted on its points: white stem, red cap, pale spots."""
    shape = mushroom()
    stem_points = 18
    shape.colours = []
    for i, (x, y, z) in enumerate(shape.points):
        spot = (i * 7) % 5 == 0
        red = (0.78, 0.1, 0.07, 1)
        shape.colours.append((0.93, 0.9, 0.82, 1) if i < stem_points + 10 or spot else red)
    return shape


def fence_post():
    return box(0.16, 1.0, 0.16, peak=0.1)


def fence_rail():
    return box(1.0, 0.09, 0.05)


def log():
    bark = lambda angle, y: 1 + 0.05 * math.cos(3 * angle + y)
    return lathe([(0.22, -1.0), (0.26, -0.9), (0.24, 0.0), (0.25, 0.9), (0.2, 1.0)], 9, bark)


def _blade(shape, angle, reach, tall, width):
    s, c = math.sin(angle), math.cos(angle)
    at = lambda out, side, y: (s * out + c * side, y, c * out - s * side)
    points = [at(0.03, -width, 0), at(0.03, width, 0), at(reach * 0.4, width * 0.7, tall * 0.65),
              at(reach * 0.4, -width * 0.7, tall * 0.65), at(reach, 0, tall)]
    uvs = [(0, 0), (1, 0), (0.85, 0.65), (0.15, 0.65), (0.5, 1)]
    shape.add(points, uvs, [[(0, 0), (1, 1), (2, 2), (3, 3)], [(3, 3), (2, 2), (4, 4)]])


def tuft(seed):
    """Blades of grass, lit as the ground below them: every normal points up."""
    shape = Shape()
    for k in range(9):
        vary = ground.noise(k * 1.7, seed * 3.1, 7)
        _blade(shape, k * 2.4 + vary, 0.2 + 0.25 * vary, 0.42 + 0.3 * vary, 0.035)
    shape.normals = [(0.0, 1.0, 0.0)] * sum(len(f) for f in shape.faces)
    return shape


def reed():
    shape = Shape()
    for k, (x, z, tall) in enumerate(((0, 0, 1.5), (0.16, 0.1, 1.2), (-0.12, 0.13, 1.35))):
        shape.extend(lathe([(0.025, -0.2), (0.015, tall), (0, tall + 0.2)], 4), (x, 0, z))
        if k < 2:
            shape.extend(lathe([(0.02, 0), (0.06, 0.04), (0.06, 0.28), (0, 0.34)], 6), (x, tall - 0.3, z))
    for k in range(4):
        _blade(shape, 1.1 + k * 1.7, 0.35, 0.9 + 0.12 * k, 0.03)
    return shape


def lily_pad():
    """A disc with a notch, a little curled at its rim."""
    points, uvs, faces = [(0, 0.02, 0)], [(0.5, 0.5)], []
    sectors = 11
    for k in range(sectors + 1):
        angle = math.radians(18 + 324 * k / sectors)
        points.append((0.45 * math.sin(angle), 0.03 + 0.02 * (k % 2), 0.45 * math.cos(angle)))
        uvs.append((0.5 + 0.5 * math.sin(angle), 0.5 - 0.5 * math.cos(angle)))
    faces = [[(0, 0), (k, k), (k + 1, k + 1)] for k in range(1, sectors + 1)]
    return Shape().add(points, uvs, faces)


def cabbage():
    shape = lathe([(0, 0.0), (0.2, 0.06), (0.25, 0.2), (0.17, 0.34), (0, 0.38)], 8)
    for k in range(6):
        s, c = math.sin(k * 1.047), math.cos(k * 1.047)
        at = lambda out, side, y: (s * out + c * side, y, c * out - s * side)
        points = [at(0.1, -0.08, 0.02), at(0.1, 0.08, 0.02), at(0.34, 0.15, 0.14), at(0.42, 0, 0.24), at(0.34, -0.15, 0.14)]
        uvs = [(0.4, 0), (0.6, 0), (1, 0.6), (0.5, 1), (0, 0.6)]
        shape.add(points, uvs, [[(i, i) for i in range(5)]])
    return shape


def scarecrow():
    shape = box(0.1, 1.5, 0.1)
    shape.extend(box(1.3, 0.09, 0.08), (0, 1.0, 0))
    shape.extend(lathe([(0, 0), (0.17, 0.08), (0.2, 0.22), (0.12, 0.36), (0, 0.38)], 8), (0, 1.32, 0))
    shape.extend(lathe([(0.42, 0.0), (0.2, 0.04), (0.16, 0.3), (0, 0.34)], 9), (0, 1.56, 0))
    shape.extend(lathe([(0.34, 0.0), (0.26, 0.4), (0.2, 0.52)], 7), (0, 0.6, 0))
    return shape
