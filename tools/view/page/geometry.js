// Meshes of the page's entries as three.js geometry. In an entry all numbers stand in two texts of
// base 64: 8 little-endian floats a vertex (position, normal, texture coordinates), and 32-bit
// indices, three a triangle, that count from the mesh's own first vertex.

import {
  BufferAttribute,
  BufferGeometry,
  InterleavedBuffer,
  InterleavedBufferAttribute,
} from 'three';

export const floatsAVertex = 8;

function bytes(text) {
  const binary = atob(text);
  const result = new Uint8Array(binary.length);
  for (let i = 0; i < binary.length; i++) {
    result[i] = binary.charCodeAt(i);
  }
  return result;
}

export function geometry(vertices, indices) {
  const made = new BufferGeometry();
  const buffer = new InterleavedBuffer(vertices, floatsAVertex);
  made.setAttribute('position', new InterleavedBufferAttribute(buffer, 3, 0));
  made.setAttribute('normal', new InterleavedBufferAttribute(buffer, 3, 3));
  made.setAttribute('uv', new InterleavedBufferAttribute(buffer, 2, 6));
  made.setIndex(new BufferAttribute(indices, 1));
  return made;
}

// All meshes in one list of vertices and one of indices, and where in them each mesh lies.
export function unpack(entry) {
  const vertices = new Float32Array(bytes(entry.vertices).buffer);
  const indices = new Uint32Array(bytes(entry.indices).buffer);
  let vertex = 0;
  let index = 0;
  const parts = entry.meshes.map(([name, vertexCount, triangleCount]) => {
    const part = {name, vertex, vertexCount, index, indexCount: 3 * triangleCount};
    for (let i = index; i < index + part.indexCount; i++) {
      indices[i] += vertex;
    }
    vertex += vertexCount;
    index += part.indexCount;
    return part;
  });
  return {vertices, indices, parts};
}

export const unitTile = () => ({
  vertices: new Float32Array([
    0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 1, 0, 1, 0, 0, 1, 1, 0, 1, 0, 1, 0, 1, 1, 1, 0, 0, 0, 1, 0, 1, 0,
  ]),
  indices: new Uint32Array([0, 1, 2, 0, 2, 3]),
});

// The open edges of a surface, each as its two end points; ends at the same place are the same.
function openEdges(surface) {
  const place = surface.getAttribute('position');
  const key = (i) => `${place.getX(i)} ${place.getY(i)} ${place.getZ(i)}`;
  const edges = new Map();
  const index = surface.getIndex().array;
  for (let i = 0; i < index.length; i++) {
    const from = index[i];
    const to = index[i % 3 === 2 ? i - 2 : i + 1];
    if (!edges.delete(`${key(to)}>${key(from)}`)) {
      edges.set(`${key(from)}>${key(to)}`, [from, to]);
    }
  }
  const point = (i) => [place.getX(i), place.getY(i), place.getZ(i)];
  return [...edges.values()].map(([from, to]) => [point(from), point(to)]);
}

// Walls from the surface's open edges down to y = bottom, so that a tile looks like a piece of
// ground.
export function walls(surface, bottom) {
  const vertices = [];
  const indices = [];
  for (const [a, b] of openEdges(surface)) {
    const length = Math.hypot(b[0] - a[0], b[2] - a[2]) || 1;
    const normal = [(a[2] - b[2]) / length, 0, (b[0] - a[0]) / length];
    const first = vertices.length / floatsAVertex;
    for (const [p, y] of [
      [a, a[1]],
      [a, bottom],
      [b, bottom],
      [b, b[1]],
    ]) {
      vertices.push(p[0], y, p[2], ...normal, 0, 0);
    }
    indices.push(first, first + 1, first + 2, first, first + 2, first + 3);
  }
  return geometry(new Float32Array(vertices), new Uint32Array(indices));
}
