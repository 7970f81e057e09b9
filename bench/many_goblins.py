#!/usr/bin/env python3
"""many_goblins.py COUNT: a scene with one tile, whose texture is many.psd, and COUNT goblins of 20 triangles on it."""

import math
import sys

count = int(sys.argv[1])
side = math.ceil(math.sqrt(count))


def mesh(name, parent, points, faces):
    edges = {}
    rows = []
    for face in faces:
        row = []
        for a, b in zip(face, face[1:] + face[:1]):
            if (b, a) in edges:
                row.append(-edges[b, a] - 1)
            else:
                row.append(edges.setdefault((a, b), len(edges)))
        rows.append(f'\t\tf {len(face)} ' + ' '.join(map(str, row)))
    print(f'createNode mesh -n "{name}" -p "{parent}";')
    print(f'\tsetAttr -s {len(points)} ".vt[0:{len(points) - 1}]" ' + ' '.join('%g %g %g' % p for p in points) + ';')
    print(f'\tsetAttr -s {len(edges)} ".ed[0:{len(edges) - 1}]" ' + ' '.join(f'{a} {b} 0' for a, b in edges) + ';')
    print(f'\tsetAttr -s {len(rows)} ".fc[0:{len(rows) - 1}]" -type "polyFaces"')
    print('\n'.join(rows) + ';')


print('//Maya ASCII 2018 scene\nrequires maya "2018";\ncurrentUnit -l centimeter -a degree -t film;')
print('createNode transform -n "tile1";')
mesh('tileShape1', 'tile1', [(0, 0, side), (side, 0, side), (side, 0, 0), (0, 0, 0)], [[0, 1, 2, 3]])
ring = [(0.35 * math.cos(k * math.pi / 5), 0.35 * math.sin(k * math.pi / 5)) for k in range(10)]
faces = [[k, (k + 1) % 10, 10] for k in range(10)] + [[(k + 1) % 10, k, 11] for k in range(10)]
for i in range(count):
    print(f'createNode transform -n "stone{i}" -p "tile1";')
    x, z = i % side + 0.5, i // side + 0.5
    points = [(x + a, 0.2, z + b) for a, b in ring] + [(x, 0.6 + 0.3 * (i % 3), z), (x, 0, z)]
    mesh(f'stoneShape{i}', f'stone{i}', points, [face[::-1] for face in faces])
print('createNode lambert -n "ground1";\ncreateNode shadingEngine -n "group1";\ncreateNode file -n "picture1";')
print('\tsetAttr ".ftn" -type "string" "many.psd";')
print('connectAttr "picture1.oc" "ground1.c";\nconnectAttr "ground1.oc" "group1.ss";')
print('connectAttr "tileShape1.iog" "group1.dsm" -na;\nconnectAttr "group1.pa" ":renderPartition.st" -na;')
