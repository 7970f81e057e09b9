// All goblins of a tile as one mesh: thousands are drawn with one call. A hidden goblin's triangles
// are left out of the index.

import {Box3, BufferAttribute, Mesh, Ray, Vector3} from 'three';
import {floatsAVertex, geometry} from './geometry.js';

export class GoblinMesh {
  constructor({vertices, indices, parts}, material) {
    this.vertices = vertices;
    this.indices = indices;
    this.parts = parts;
    this.visible = new Uint8Array(parts.length).fill(1);
    this.geometry = geometry(vertices, indices.slice());
    this.colors = new BufferAttribute(
      new Uint8Array((4 * vertices.length) / floatsAVertex).fill(255),
      4,
      true,
    );
    this.geometry.setAttribute('color', this.colors);
    this.mesh = new Mesh(this.geometry, material);
    this.mesh.frustumCulled = false;
    this.boxes = parts.map((part) => this.boxOf(part));
  }

  boxOf({vertex, vertexCount}) {
    const box = new Box3();
    const point = new Vector3();
    for (let i = vertex; i < vertex + vertexCount; i++) {
      box.expandByPoint(point.fromArray(this.vertices, i * floatsAVertex));
    }
    return box;
  }

  setVisible(number, visible) {
    this.visible[number] = visible ? 1 : 0;
    this.stale = true;
  }

  // Puts the triangles of what is visible into the index. True when that changed the picture.
  refresh() {
    if (!this.stale) {
      return false;
    }
    this.stale = false;
    const shown = this.geometry.getIndex();
    let length = 0;
    this.parts.forEach(({index, indexCount}, number) => {
      if (this.visible[number]) {
        shown.array.set(this.indices.subarray(index, index + indexCount), length);
        length += indexCount;
      }
    });
    this.geometry.setDrawRange(0, length);
    shown.needsUpdate = true;
    return true;
  }

  // `colorOf` gives red, green, blue of a goblin from 0 to 255.
  paint(colorOf) {
    this.parts.forEach(({vertex, vertexCount}, number) => {
      const [r, g, b] = colorOf(number);
      for (let i = vertex; i < vertex + vertexCount; i++) {
        this.colors.setXYZW(i, r / 255, g / 255, b / 255, 1);
      }
    });
    this.colors.needsUpdate = true;
  }

  // The nearest visible goblin that the ray, in this mesh's space, meets; or null.
  hit(ray) {
    const corners = [new Vector3(), new Vector3(), new Vector3()];
    const at = new Vector3();
    let best = null;
    this.parts.forEach(({index, indexCount}, number) => {
      if (!this.visible[number] || !ray.intersectsBox(this.boxes[number])) {
        return;
      }
      for (let i = index; i < index + indexCount; i += 3) {
        corners.forEach((corner, k) =>
          corner.fromArray(this.vertices, this.indices[i + k] * floatsAVertex),
        );
        if (ray.intersectTriangle(...corners, false, at)) {
          const distance = at.distanceTo(ray.origin);
          if (!best || distance < best.distance) {
            best = {number, distance, point: at.clone()};
          }
        }
      }
    });
    return best;
  }

  // The same for a ray, and distances, in the space of the whole view.
  hitFrom(worldRay) {
    const toWorld = this.mesh.matrixWorld;
    const found = this.hit(new Ray().copy(worldRay).applyMatrix4(toWorld.clone().invert()));
    if (found) {
      found.distance = found.point.applyMatrix4(toWorld).distanceTo(worldRay.origin);
    }
    return found;
  }

  // One goblin as a geometry of its own.
  single(number) {
    const {vertex, vertexCount, index, indexCount} = this.parts[number];
    return geometry(
      this.vertices.slice(vertex * floatsAVertex, (vertex + vertexCount) * floatsAVertex),
      this.indices.slice(index, index + indexCount).map((i) => i - vertex),
    );
  }

  dispose() {
    this.geometry.dispose();
  }
}
