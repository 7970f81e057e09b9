"""The lie of the land: height and colour of the meadow at a point, in scene units.

x grows to the east and z to the south; the meadow spans -10 ... 10 in both. Everything is a pure function of
the place, so that neighbouring tiles meet without a seam.
"""

import math

HALF = 10.0
WATER_LEVEL = -0.45
POND = (-5.0, 5.0)
FIELD = (4.2, 9.4, 1.8, 9.4)  # west, east, north, south


def _lattice(x, z, seed):
    n = (x * 374761393 + z * 668265263 + seed * 2147483647) & 0xFFFFFFFF
    n = ((n ^ (n >> 13)) * 1274126177) & 0xFFFFFFFF
    return ((n ^ (n >> 16)) & 0xFFFF) / 65535.0


def noise(x, z, seed=0):
    """Smooth noise in 0 ... 1 that changes over one unit."""
    ix, iz = math.floor(x), math.floor(z)
    fx, fz = x - ix, z - iz
    fx, fz = fx * fx * (3 - 2 * fx), fz * fz * (3 - 2 * fz)
    north = _lattice(ix, iz, seed) * (1 - fx) + _lattice(ix + 1, iz, seed) * fx
    south = _lattice(ix, iz + 1, seed) * (1 - fx) + _lattice(ix + 1, iz + 1, seed) * fx
    return north * (1 - fz) + south * fz


def fractal(x, z, octaves, seed=0):
    total, weight, norm = 0.0, 1.0, 0.0
    for octave in range(octaves):
        total += weight * noise(x, z, seed + octave)
        norm += weight
        x, z, weight = x * 2.03 + 11.3, z * 2.03 + 7.9, weight * 0.5
    return total / norm


def step(low, high, value):
    """0 below low, 1 above high, smooth between; low may be the larger of the two."""
    t = min(1.0, max(0.0, (value - low) / (high - low)))
    return t * t * (3 - 2 * t)


def mix(a, b, t):
    return tuple(p + (q - p) * t for p, q in zip(a, b))


def path_centre(z):
    return 1.9 + 3.0 / (1 + math.exp((z + 2) * 0.6)) + 0.5 * math.sin(0.9 * z)


def path_distance(x, z):
    return abs(x - path_centre(z)) + 0.35 * (fractal(x * 0.9, z * 0.9, 2, 31) - 0.5)


def pond_distance(x, z):
    """Distance from the pond's middle, with its ragged shore taken into account."""
    return math.hypot((x - POND[0]) * 0.95, z - POND[1]) + 1.3 * (fractal(x * 0.5, z * 0.5, 2, 53) - 0.5)


def field_share(x, z):
    west, east, north, south = FIELD
    inside = min(x - west, east - x, z - north, south - z)
    return step(-0.1, 0.25, inside + 0.3 * (fractal(x * 1.3, z * 1.3, 2, 71) - 0.5))


def height(x, z):
    h = 0.9 * (fractal(x * 0.23, z * 0.23, 3, 5) - 0.5)
    h += 2.3 * math.exp(-((x + 5.4) ** 2 + (z + 5.6) ** 2) / 10.0)
    h += 0.7 * math.exp(-((x - 8.5) ** 2 + (z + 8.0) ** 2) / 8.0)
    h -= 0.22 * math.exp(-((path_distance(x, z) / 0.9) ** 2))
    h += field_share(x, z) * 0.07 * math.cos(2 * math.pi * x)
    return h + (WATER_LEVEL - h) * step(4.1, 2.7, pond_distance(x, z))


def _light(x, z):
    """How much brighter a slope is that faces the north-west."""
    e = 0.12
    slope = height(x - e, z - e) - height(x + e, z + e)
    return max(0.72, min(1.22, 1.0 - 0.9 * slope))


def grass(x, z):
    dark, lush, dry = (58, 92, 34), (104, 142, 52), (156, 160, 74)
    colour = mix(dark, lush, fractal(x * 0.6, z * 0.6, 3, 1))
    colour = mix(colour, dry, step(0.55, 0.8, fractal(x * 0.35, z * 0.35, 2, 17)) * 0.6)
    blades = noise(x * 16, z * 7, 3) * 0.6 + noise(x * 31, z * 29, 4) * 0.4
    return tuple(c * (0.72 + 0.5 * blades) for c in colour)


def flowers(x, z):
    """Colour and share of the small flowers, which stand in drifts."""
    cell = 0.22
    ix, iz = math.floor(x / cell), math.floor(z / cell)
    drift = step(0.55, 0.7, fractal(x * 0.4, z * 0.4, 2, 91))
    if _lattice(ix, iz, 11) > 0.4 * drift:
        return (0, 0, 0), 0.0
    cx = (ix + 0.3 + 0.4 * _lattice(ix, iz, 12)) * cell
    cz = (iz + 0.3 + 0.4 * _lattice(ix, iz, 13)) * cell
    colours = ((244, 240, 230), (240, 206, 62), (178, 120, 196))
    colour = colours[int(_lattice(ix, iz, 14) * 2.999)]
    return colour, step(0.065, 0.035, math.hypot(x - cx, z - cz))


def path_share(x, z):
    return step(0.95, 0.6, path_distance(x, z))


def path(x, z):
    colour = mix((150, 122, 86), (188, 162, 120), fractal(x * 2.2, z * 2.2, 3, 37))
    pebble = step(0.62, 0.78, noise(x * 9, z * 9, 41)) * step(0.3, 0.5, noise(x * 2.5, z * 2.5, 43))
    return mix(colour, (126, 122, 116), pebble * 0.75)


def soil(x, z):
    colour = mix((86, 60, 40), (124, 92, 62), fractal(x * 3.1, z * 3.1, 3, 73))
    furrow = 0.82 + 0.18 * math.cos(2 * math.pi * x)
    crumbs = 0.85 + 0.3 * noise(x * 21, z * 21, 79)
    return tuple(c * furrow * crumbs for c in colour)


def water(x, z):
    depth = step(3.0, 0.6, pond_distance(x, z))
    colour = mix((108, 150, 140), (26, 74, 98), depth)
    ripple = step(0.6, 0.75, fractal(x * 1.1 + 2 * fractal(x, z, 2, 61), z * 3.3, 2, 59))
    return mix(colour, (176, 208, 212), ripple * 0.35)


def turf(x, z):
    """Everything that grows or is dug, without path and flowers: the bottom of the layered picture."""
    colour = mix(grass(x, z), soil(x, z), field_share(x, z))
    shore = pond_distance(x, z) + 0.25 * (noise(x * 4, z * 4, 67) - 0.5)
    colour = mix(colour, (182, 164, 118), step(3.95, 3.5, shore))
    colour = mix(colour, water(x, z), step(3.2, 3.0, shore))
    light = _light(x, z)
    return tuple(c * light for c in colour)


def blooming(x, z):
    """Where flowers grow: not in the water, the field or on the path."""
    bare = max(field_share(x, z), path_share(x, z), step(4.1, 3.7, pond_distance(x, z)))
    colour, share = flowers(x, z)
    return colour, share * (1 - bare)


def colour(x, z):
    """The finished picture of the ground, 0 ... 255 for each of red, green and blue."""
    base = mix(turf(x, z), path(x, z), path_share(x, z))
    bloom, share = blooming(x, z)
    return mix(base, bloom, share)
